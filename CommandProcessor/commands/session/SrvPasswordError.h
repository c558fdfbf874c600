#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>

namespace poker {

/// The table's password was wrong, in answer to ClSendUserPass; the client shows reasonToStr().
class COMMANDPROCESSOR_API SrvPasswordError final : public Command<SrvPasswordError> {
 public:
  /// Other values are carried as they are.
  enum ReasonID : std::uint8_t {
    WrongPassword = 0,
    NotAuthorized = 1,  ///< the user is not one of those whom the password admits
  };

  /// @param shouldClose  the client closes the table's window; otherwise the user may try again
  void init(ReasonID reason, bool shouldClose);

  ReasonID reasonID() const { return reason_; }
  bool shouldClose() const { return shouldClose_; }
  /// What the user is told. Never null.
  const char* reasonToStr() const;

 private:
  friend FieldAccess;
  SrvPasswordError() = default;
  static void fields(auto& self, auto&& field);

  ReasonID reason_ = WrongPassword;
  bool shouldClose_ = false;
};

}  // namespace poker
