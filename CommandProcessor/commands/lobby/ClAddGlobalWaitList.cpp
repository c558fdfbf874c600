#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/lobby/ClAddGlobalWaitList.h>

namespace poker {

void ClAddGlobalWaitList::init(std::uint16_t gameType, RealMoneyType lowBet, RealMoneyType highBet, int minPlayers,
                               int maxPlayers, bool realMoney) {
  clearConnections();
  gameType_ = gameType;
  lowBet_ = lowBet;
  highBet_ = highBet;
  minPlayers_ = minPlayers;
  maxPlayers_ = maxPlayers;
  realMoney_ = realMoney;
}

void ClAddGlobalWaitList::fields(auto& self, auto&& field) {
  field("gameType", self.gameType_);
  field("lowBet", self.lowBet_);
  field("highBet", self.highBet_);
  field("minPlayers", self.minPlayers_);
  field("maxPlayers", self.maxPlayers_);
  field("realMoney", self.realMoney_);
}

template class Command<ClAddGlobalWaitList>;
template class CachedCmdCreator<ClAddGlobalWaitList>;

}  // namespace poker
