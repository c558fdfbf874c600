#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvUpdatePlayers.h>

namespace poker {

void SrvUpdatePlayers::init(const MultiTourPlayersInfo& players, std::uint32_t tourID) {
  clearConnections();
  players_ = players;
  tourID_ = tourID;
}

void SrvUpdatePlayers::fields(auto& self, auto&& field) {
  field("players", self.players_);
  field("tourID", self.tourID_);
}

template class Command<SrvUpdatePlayers>;
template class CachedCmdCreator<SrvUpdatePlayers>;

}  // namespace poker
