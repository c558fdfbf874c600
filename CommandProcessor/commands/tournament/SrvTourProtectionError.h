#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>
#include <string>

namespace poker {

/// A player may not look at a protected tournament or its tables.
class COMMANDPROCESSOR_API SrvTourProtectionError final : public Command<SrvTourProtectionError> {
 public:
  /// One byte; other values are carried as they are.
  enum class Reason : std::uint8_t {
    None = 0,
    RegisterFirst = 1,  ///< the password is asked for at registration
  };

  void init(Reason reason, std::uint32_t tourID);

  Reason reason() const { return reason_; }
  std::uint32_t tourID() const { return tourID_; }
  /// What the player is told: one line, or several with "\n" between them; empty for reasons without a text.
  std::string reasonStr() const;

 private:
  friend FieldAccess;
  SrvTourProtectionError() = default;
  static void fields(auto& self, auto&& field);

  Reason reason_ = Reason::None;
  std::uint32_t tourID_ = 0;
};

}  // namespace poker
