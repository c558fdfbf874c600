#pragma once

#include <CommandProcessor/commands/Command.h>

namespace poker {

/// A player asks for the amounts of the table and the account. Answered by SrvMoney.
/// It has no fields; init() is that of PokerCommand.
class COMMANDPROCESSOR_API ClGetMoney final : public Command<ClGetMoney> {
 private:
  friend FieldAccess;
  ClGetMoney() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
