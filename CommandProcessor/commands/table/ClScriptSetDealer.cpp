#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/ClScriptSetDealer.h>

namespace poker {

void ClScriptSetDealer::init(SeatID seat, unsigned minimumPlayers, const std::string& cards) {
  clearConnections();
  seatID_ = seat;
  minimumPlayers_ = minimumPlayers;
  cards_ = cards;
}

void ClScriptSetDealer::fields(auto& self, auto&& field) {
  field("seatID", self.seatID_);
  field("minimumPlayers", self.minimumPlayers_);
  field("cards", self.cards_);
}

template class Command<ClScriptSetDealer>;
template class CachedCmdCreator<ClScriptSetDealer>;

}  // namespace poker
