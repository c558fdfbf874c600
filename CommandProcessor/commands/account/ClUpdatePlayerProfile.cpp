#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/ClUpdatePlayerProfile.h>

namespace poker {

void ClUpdatePlayerProfile::init(const MemberProfileInfo& info) {
  clearConnections();
  info_ = info;
}

void ClUpdatePlayerProfile::fields(auto& self, auto&& field) { field("info", self.info_); }

template class Command<ClUpdatePlayerProfile>;
template class CachedCmdCreator<ClUpdatePlayerProfile>;

}  // namespace poker
