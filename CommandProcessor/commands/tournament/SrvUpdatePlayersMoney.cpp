#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvUpdatePlayersMoney.h>

namespace poker {

void SrvUpdatePlayersMoney::init(std::uint32_t requestedTable, std::uint32_t tourID) {
  clearConnections();
  requestedTable_ = requestedTable;
  tourID_ = tourID;
  players_.clear();
}

void SrvUpdatePlayersMoney::addPlayer(const std::string& name, const RealMoneyType& money) {
  PlayerMoney& player = players_.emplace_back();
  player.name = name;
  player.money = money;
}

void SrvUpdatePlayersMoney::fields(auto& self, auto&& field) {
  field("requestedTable", self.requestedTable_);
  field("tourID", self.tourID_);
  field("players", list<std::uint32_t>(self.players_));
}

template class Command<SrvUpdatePlayersMoney>;
template class CachedCmdCreator<SrvUpdatePlayersMoney>;

}  // namespace poker
