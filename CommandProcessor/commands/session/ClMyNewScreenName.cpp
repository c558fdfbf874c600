#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/ClMyNewScreenName.h>

namespace poker {

void ClMyNewScreenName::init(const char* screenName, const char* password, const CommonTypes::HardwareInfo& hdInfo,
                             const char* pinCode, char* frID, int frIDSize) {
  clearConnections();
  screenName_ = screenName != nullptr ? screenName : "";
  password_ = password != nullptr ? password : "";
  pinCode_ = pinCode != nullptr ? pinCode : "";
  frIDHolder_.assign(frID, frID != nullptr && frIDSize > 0 ? static_cast<std::size_t>(frIDSize) : 0);
  hdInfo_ = hdInfo;
}

void ClMyNewScreenName::fields(auto& self, auto&& field) {
  field("screenName", self.screenName_);
  field("password", secret(self.password_));
  field("pinCode", secret(self.pinCode_));
  // The machine's values come last, unlike in init().
  field("frIDHolder", self.frIDHolder_);
  field("hdInfo", self.hdInfo_);
}

template class Command<ClMyNewScreenName>;
template class CachedCmdCreator<ClMyNewScreenName>;

}  // namespace poker
