#pragma once

#include <CommandProcessor/commands/Command.h>

namespace poker {

/// A user asks for more play money. Answered by SrvPlayMoneyMessage. It shares its pair with ClMiscDumpManager, and is
/// what a receiver takes the pair for.
class COMMANDPROCESSOR_API ClMiscIncreasePlayMoney final : public Command<ClMiscIncreasePlayMoney> {
 private:
  friend FieldAccess;
  ClMiscIncreasePlayMoney() = default;
  static void fields(auto&, auto&&) {}
};

}  // namespace poker
