#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvTourDetails.h>

namespace poker {

void SrvTourDetails::init(const TournamentDetailedInfo& info, std::uint32_t tourID) {
  clearConnections();
  info_ = info;
  tourID_ = tourID;
}

void SrvTourDetails::fields(auto& self, auto&& field) {
  field("info", self.info_);
  field("tourID", self.tourID_);
}

template class Command<SrvTourDetails>;
template class CachedCmdCreator<SrvTourDetails>;

}  // namespace poker
