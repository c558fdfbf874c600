#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/UpdateHardwareInfo.h>

namespace poker {

void UpdateHardwareInfo::init(int userID, const CommonTypes::HardwareInfo& info, const std::string& ip) {
  ClMiscUserBased::init(userID);
  info_ = info;
  ip_ = ip;
}

void UpdateHardwareInfo::fields(auto& self, auto&& field) {
  ClMiscUserBased::fields(self, field);
  field.local(self.info_);
  field.local(self.ip_);
}

template class Command<UpdateHardwareInfo, ClMiscUserBased>;
template class CachedCmdCreator<UpdateHardwareInfo>;

}  // namespace poker
