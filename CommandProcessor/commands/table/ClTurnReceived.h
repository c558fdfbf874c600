#pragma once

#include <CommandProcessor/commands/Command.h>

namespace poker {

/// The client has received its SrvUserTurn: the reply time begins.
/// It has no fields; init() is that of PokerCommand.
class COMMANDPROCESSOR_API ClTurnReceived final : public Command<ClTurnReceived> {
 private:
  friend FieldAccess;
  ClTurnReceived() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
