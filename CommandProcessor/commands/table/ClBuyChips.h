#pragma once

#include <CommandProcessor/commands/Command.h>

namespace poker {

/// A player wants to buy chips. No processor has a handler for it: process() does nothing, and a host that offers this
/// looks at the command before it processes it.
/// It has no fields; init() is that of PokerCommand.
class COMMANDPROCESSOR_API ClBuyChips final : public Command<ClBuyChips> {
 private:
  friend FieldAccess;
  ClBuyChips() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
