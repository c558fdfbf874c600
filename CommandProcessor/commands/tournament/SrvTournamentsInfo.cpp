#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvTournamentsInfo.h>

namespace poker {

void SrvTournamentsInfo::init(const TournamentsInfo& info) {
  clearConnections();
  info_ = info;
}

void SrvTournamentsInfo::fields(auto& self, auto&& field) { field("info", self.info_); }

template class Command<SrvTournamentsInfo>;
template class CachedCmdCreator<SrvTournamentsInfo>;

}  // namespace poker
