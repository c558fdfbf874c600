#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/ClLogon.h>

namespace poker {

void ClLogon::init(const char* userName, const char* password, const CommonTypes::HardwareInfo& hardwareValues,
                   const char* affiliateNumber, int affiliateSize, bool checkPlayMoneyMessage, bool canUseAffID) {
  clearConnections();
  userName_ = userName != nullptr ? userName : "";
  password_ = password != nullptr ? password : "";
  hardwareValues_ = hardwareValues;
  const bool hasAffiliate = affiliateNumber != nullptr && affiliateSize > 0;
  affiliateNumber_.assign(affiliateNumber, affiliateNumber + (hasAffiliate ? affiliateSize : 0));
  checkPlayMoneyMessage_ = checkPlayMoneyMessage;
  canUseAffID_ = canUseAffID;
}

void ClLogon::fields(auto& self, auto&& field) {
  field("userName", self.userName_);
  field("password", secret(self.password_));
  field("hardwareValues", self.hardwareValues_);
  // The size is signed; a negative one fails as one that is too large.
  field("affiliateNumber", bytes<std::int32_t>(self.affiliateNumber_));
  field("checkPlayMoneyMessage", self.checkPlayMoneyMessage_);
  field("canUseAffID", self.canUseAffID_);
}

template class Command<ClLogon>;
template class CachedCmdCreator<ClLogon>;

}  // namespace poker
