#pragma once

#include <CommandProcessor/commands/ClMiscUserBased.h>
#include <CommandProcessor/commands/Command.h>

namespace poker {

/// A user opens the cashier. Answered by SrvCashierStatus and SrvTransHistory.
class COMMANDPROCESSOR_API ClMiscCashierInfo final : public Command<ClMiscCashierInfo, ClMiscUserBased> {
 private:
  friend FieldAccess;
  ClMiscCashierInfo() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
