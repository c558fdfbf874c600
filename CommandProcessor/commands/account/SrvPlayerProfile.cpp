#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/SrvPlayerProfile.h>

namespace poker {

void SrvPlayerProfile::init() {
  clearConnections();
  valid_ = false;
  info_ = {};
}

void SrvPlayerProfile::info(const MemberProfileInfo& info) {
  valid_ = true;
  info_ = info;
}

void SrvPlayerProfile::fields(auto& self, auto&& field) {
  field("valid", self.valid_);
  field("info", self.info_);
}

template class Command<SrvPlayerProfile>;
template class CachedCmdCreator<SrvPlayerProfile>;

}  // namespace poker
