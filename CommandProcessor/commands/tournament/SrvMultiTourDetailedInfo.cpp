#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvMultiTourDetailedInfo.h>

namespace poker {

void SrvMultiTourDetailedInfo::init(const MultiTourMoneyInfo& money, const MultiStartInfo& start,
                                    const MultiTourneyInfo& tour, std::uint32_t tourID, std::uint32_t ownTable,
                                    bool registered) {
  clearConnections();
  money_ = money;
  start_ = start;
  tour_ = tour;
  tourID_ = tourID;
  ownTable_ = ownTable;
  registered_ = registered;
}

void SrvMultiTourDetailedInfo::fields(auto& self, auto&& field) {
  field("money", self.money_);
  field("start", self.start_);
  field("tour", self.tour_);
  field("tourID", self.tourID_);
  field("ownTable", self.ownTable_);
  field("registered", self.registered_);
}

template class Command<SrvMultiTourDetailedInfo>;
template class CachedCmdCreator<SrvMultiTourDetailedInfo>;

}  // namespace poker
