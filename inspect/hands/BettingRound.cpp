#include <inspect/hands/BettingRound.h>

#include <algorithm>

namespace poker {

BettingRound::BettingRound(const HandView& hand)
    : hand_(&hand), standings_(hand.players().size()), size_(hand.betSize()), leastRaise_(size_) {
  if (!hand.board().empty()) return;
  // Also when the player could not pay all of it.
  level_ = fullLevel_ = hand.bigBlind();
  for (std::size_t i = 0; i < hand.players().size(); ++i) {
    level_ = std::max(level_, hand.players()[i].bet);
    if (hand.players()[i].seat == hand.bigBlindSeat()) next_ = i + 1;
  }
  bets_ = 1;
}

bool BettingRound::anotherCanAct(std::size_t player) const {
  const auto& players = hand_->players();
  for (std::size_t i = 0; i < players.size(); ++i) {
    if (i != player && players[i].canAct()) return true;
  }
  return false;
}

RealMoneyType BettingRound::toCall(std::size_t player) const {
  const auto& players = hand_->players();
  RealMoneyType price = level_;
  if (!anotherCanAct(player)) {
    // Nobody can put in more than the others have by now.
    price = kZeroMoney;
    for (std::size_t i = 0; i < players.size(); ++i) {
      if (i != player && !players[i].folded) price = std::max(price, players[i].bet);
    }
  }
  return std::max(price - players[player].bet, kZeroMoney);
}

std::optional<std::size_t> BettingRound::turn() const {
  const auto& players = hand_->players();
  if (hand_->remaining() < 2) return std::nullopt;
  for (std::size_t step = 0; step < players.size(); ++step) {
    const std::size_t i = (next_ + step) % players.size();
    if (!players[i].canAct()) continue;
    if (toCall(i) > kZeroMoney || (!standings_[i].acted && anotherCanAct(i))) return i;
  }
  return std::nullopt;
}

bool BettingRound::mayRaise(std::size_t player) const {
  const Standing& standing = standings_[player];
  if (!anotherCanAct(player)) return false;
  if (!standing.acted) return true;
  return isFixed() ? bets_ > standing.bets : level_ - standing.level >= leastRaise_;
}

void BettingRound::acted(std::size_t player) {
  const RealMoneyType& bet = hand_->players()[player].bet;
  if (bet > level_) {
    if (isFixed()) {
      if ((bet - fullLevel_) * 2 >= size_) {
        ++bets_;
        fullLevel_ = bet;
      }
    } else {
      leastRaise_ = std::max(leastRaise_, bet - level_);
    }
    level_ = bet;
  }
  standings_[player] = {true, level_, bets_};
  next_ = player + 1;
}

}  // namespace poker
