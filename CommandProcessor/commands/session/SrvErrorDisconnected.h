#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>

namespace poker {

/// The server ends the connection and tells why; the client shows errCodeToVisualString().
class COMMANDPROCESSOR_API SrvErrorDisconnected final : public Command<SrvErrorDisconnected> {
 public:
  /// Other values are carried as they are.
  enum ErrorCode : std::uint32_t {
    BadReplay = 0,
    BadGameID = 1,  ///< the table is gone
    BadCommand = 2,
    InternalError = 3,
    DisconnectConn = 4,
    Banned = 5,
    Reconnect = 6,
  };

  void init(ErrorCode errorCode);

  ErrorCode getErrorCode() const { return errorCode_; }

  /// The code's name, for logs. Never null.
  const char* errCodeToString() const;
  /// What the player is told: one line, or several with "\n" between them. Never null.
  const char* errCodeToVisualString() const;

 private:
  friend FieldAccess;
  SrvErrorDisconnected() = default;
  static void fields(auto& self, auto&& field);

  ErrorCode errorCode_ = BadReplay;
};

}  // namespace poker
