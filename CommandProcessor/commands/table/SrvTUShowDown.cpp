#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/SrvTUShowDown.h>

namespace poker {

void SrvTUShowDown::init(const RealMoneyType& casinoProfit) {
  initUpdate(SeatID(), false);
  users_.clear();
  wins_.clear();
  bets_.clear();
  casinoProfit_ = casinoProfit;
}

void SrvTUShowDown::addFinalUser(const CardVector& cards, SeatID seat, const RealMoneyType& money,
                                 SDInfo::WinnerType winnerType) {
  const RealMoneyType won = money;  // which may be an amount of this command, and move when the list grows
  users_.emplace_back().set(cards, seat, won, winnerType);
}

void SrvTUShowDown::addPlayerInfo(SeatID seat, const RealMoneyType& bet, const RealMoneyType& win) {
  wins_.set(seat, win);
  bets_.set(seat, bet);
}

RealMoneyType SrvTUShowDown::wins(const SeatID& seat) const {
  const auto place = wins_.find(seat);
  return place != wins_.end() ? place->second : RealMoneyType();
}

RealMoneyType SrvTUShowDown::bets(const SeatID& seat) const {
  const auto place = bets_.find(seat);
  return place != bets_.end() ? place->second : RealMoneyType();
}

void SrvTUShowDown::fields(auto& self, auto&& field) {
  SrvTableStateUpdate::fields(self, field);
  field("users", self.users_);
  field("wins", map<std::uint32_t>(self.wins_));
  field("bets", map<std::uint32_t>(self.bets_));
  field("casinoProfit", self.casinoProfit_);
}

template class Command<SrvTUShowDown, SrvTableStateUpdate>;
template class CachedCmdCreator<SrvTUShowDown>;

}  // namespace poker
