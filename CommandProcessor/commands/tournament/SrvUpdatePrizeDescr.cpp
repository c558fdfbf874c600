#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvUpdatePrizeDescr.h>

namespace poker {

void SrvUpdatePrizeDescr::init(const PrizeSchemeInfoMap& prizes, std::uint32_t tourID, std::uint32_t prizeVersion) {
  clearConnections();
  prizes_ = prizes;
  tourID_ = tourID;
  prizeVersion_ = prizeVersion;
}

void SrvUpdatePrizeDescr::fields(auto& self, auto&& field) {
  field("prizes", self.prizes_);
  field("tourID", self.tourID_);
  field("prizeVersion", self.prizeVersion_);
}

template class Command<SrvUpdatePrizeDescr>;
template class CachedCmdCreator<SrvUpdatePrizeDescr>;

}  // namespace poker
