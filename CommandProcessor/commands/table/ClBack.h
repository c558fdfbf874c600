#pragma once

#include <CommandProcessor/commands/Command.h>

namespace poker {

/// A player who sat out wants to play again. Answered by SrvBackOnSeatOk.
/// It has no fields; init() is that of PokerCommand.
class COMMANDPROCESSOR_API ClBack final : public Command<ClBack> {
 private:
  friend FieldAccess;
  ClBack() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
