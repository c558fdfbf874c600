#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvTourTableInfo.h>

namespace poker {

void SrvTourTableInfo::init(const GameStartupInfo& info, TOUR_NAMES::TourType type) {
  clearConnections();
  info_ = info;
  type_ = type;
}

void SrvTourTableInfo::fields(auto& self, auto&& field) {
  field("info", self.info_);
  field("type", self.type_);
}

template class Command<SrvTourTableInfo>;
template class CachedCmdCreator<SrvTourTableInfo>;

}  // namespace poker
