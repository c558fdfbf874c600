#pragma once

#include <CommandProcessor/commands/Command.h>

namespace poker {

/// A player leaves the seat; the connection to the table stays. Everybody there is told by SrvUserStateOnTable.
/// It has no fields; init() is that of PokerCommand.
class COMMANDPROCESSOR_API ClLeaveSeat final : public Command<ClLeaveSeat> {
 private:
  friend FieldAccess;
  ClLeaveSeat() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
