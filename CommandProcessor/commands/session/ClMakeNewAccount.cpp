#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/ClMakeNewAccount.h>

namespace poker {

void ClMakeNewAccount::init(const CommonTypes::NewAccountInfo& accountInfo, RawDataHolder& rawData,
                            const Int2StringSer& properties) {
  ClMiscUserBased::init();
  accountInfo_ = accountInfo;
  rawData_ = rawData;
  properties_ = properties;
}

void ClMakeNewAccount::fields(auto& self, auto&& field) {
  ClMiscUserBased::fields(self, field);
  field("accountInfo", self.accountInfo_);
  // In front of the raw data, unlike in init().
  field("properties", self.properties_);
  field("rawData", self.rawData_);
}

template class Command<ClMakeNewAccount, ClMiscUserBased>;
template class CachedCmdCreator<ClMakeNewAccount>;

}  // namespace poker
