#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/SrvLogonChange.h>

namespace poker {

void SrvLogonChange::init(bool validEmail, bool chatEnabled, const RealMoneyAcc& realMoneyAccount,
                          bool isSetupResponse) {
  clearConnections();
  validEmail_ = validEmail;
  chatEnabled_ = chatEnabled;
  realMoneyAccount_ = realMoneyAccount;
  isSetupResponse_ = isSetupResponse;
}

void SrvLogonChange::fields(auto& self, auto&& field) {
  // Other bits than in SrvLogonOk.
  field("flags", flags(bit<0>("validEmail", self.validEmail_), bit<1>("chatEnabled", self.chatEnabled_),
                       bit<2>("isSetupResponse", self.isSetupResponse_)));
  field("realMoneyAccount", self.realMoneyAccount_);
}

template class Command<SrvLogonChange>;
template class CachedCmdCreator<SrvLogonChange>;

}  // namespace poker
