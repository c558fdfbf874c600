#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvUpdatePrizeFund.h>

namespace poker {

void SrvUpdatePrizeFund::init(std::uint32_t version, const PrizeFundInfo& fund, std::uint32_t tourID) {
  clearConnections();
  version_ = version;
  fund_ = fund;
  tourID_ = tourID;
}

void SrvUpdatePrizeFund::fields(auto& self, auto&& field) {
  field("fund", self.fund_);
  field("version", self.version_);  // in front of the tournament, unlike in SrvUpdatePrizeDescr; peers expect it so
  field("tourID", self.tourID_);
}

template class Command<SrvUpdatePrizeFund>;
template class CachedCmdCreator<SrvUpdatePrizeFund>;

}  // namespace poker
