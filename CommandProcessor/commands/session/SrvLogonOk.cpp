#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/SrvLogonOk.h>

namespace poker {

void SrvLogonOk::init(const std::string& screenName, const char* email, bool validEmail,
                      const RealMoneyAcc& realMoneyAccount, bool chatEnabled) {
  clearConnections();
  screenName_ = screenName;
  prevSeatID_ = SeatID();
  validEmail_ = validEmail;
  email_ = email != nullptr ? email : "";
  realMoneyAccount_ = realMoneyAccount;
  chatEnabled_ = chatEnabled;
}

void SrvLogonOk::aboutToSerialize(SerializeCommandBuf& buf) const { buf.setMark(); }

void SrvLogonOk::fields(auto& self, auto&& field) {
  field("screenName", self.screenName_);
  field("prevSeatID", self.prevSeatID_);
  // Other bits than in SrvLogonChange.
  field("flags", flags(bit<2>("chatEnabled", self.chatEnabled_), bit<3>("validEmail", self.validEmail_)));
  field("email", self.email_);
  field("realMoneyAccount", self.realMoneyAccount_);
}

template class Command<SrvLogonOk>;
template class CachedCmdCreator<SrvLogonOk>;

}  // namespace poker
