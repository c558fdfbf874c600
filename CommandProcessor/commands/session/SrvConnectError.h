#pragma once

#include <CommandProcessor/commands/Command.h>

namespace poker {

/// The server refuses the connection, in answer to ClHandShake, and gives no reason.
/// It has no fields; init() is that of PokerCommand.
class COMMANDPROCESSOR_API SrvConnectError final : public Command<SrvConnectError> {
 private:
  friend FieldAccess;
  SrvConnectError() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
