#pragma once

#include <CommandProcessor/commands/ClMiscUserBased.h>
#include <CommandProcessor/commands/Command.h>

namespace poker {

/// The cashier of a user's client asks for the user's credit cards. Answered by SrvCreditCardInfo.
class COMMANDPROCESSOR_API ClMiscGetCreditCardInfo final : public Command<ClMiscGetCreditCardInfo, ClMiscUserBased> {
 private:
  friend FieldAccess;
  ClMiscGetCreditCardInfo() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
