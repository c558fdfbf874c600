#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/ClGetExtraMoney.h>

namespace poker {

void ClGetExtraMoney::init(RequestType type, bool state, std::uint32_t rebuys, std::uint32_t tournamentId,
                           const TourMoneyChooser& moneyChooser) {
  clearConnections();
  type_ = type;
  state_ = state;
  rebuys_ = rebuys;
  tournamentId_ = tournamentId;
  moneyChooser_ = moneyChooser;
}

void ClGetExtraMoney::fields(auto& self, auto&& field) {
  field("rebuys", self.rebuys_);
  field("state", self.state_);
  field("tournamentId", self.tournamentId_);
  field("type", self.type_);
  field("moneyChooser", self.moneyChooser_);
}

template class Command<ClGetExtraMoney, ClientTourCommandBase>;
template class CachedCmdCreator<ClGetExtraMoney>;

}  // namespace poker
