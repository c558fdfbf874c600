#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>
#include <string>

namespace poker {

/// Whether a registration was taken back, in answer to ClTourUnregister.
class COMMANDPROCESSOR_API SrvTourUnregisterResult final : public Command<SrvTourUnregisterResult> {
 public:
  /// One byte; other values are carried as they are.
  enum class Reason : std::uint8_t {
    None = 0,
    Unregistered = 1,
    AlreadyStarted = 2,
    Failed = 3,
  };

  void init(Reason reason, std::uint32_t tourID);

  Reason reason() const { return reason_; }
  std::uint32_t tourID() const { return tourID_; }
  /// What the player is told: one line, or several with "\n" between them; empty for reasons without a text.
  std::string reasonStr() const;

 private:
  friend FieldAccess;
  SrvTourUnregisterResult() = default;
  static void fields(auto& self, auto&& field);

  Reason reason_ = Reason::None;
  std::uint32_t tourID_ = 0;
};

}  // namespace poker
