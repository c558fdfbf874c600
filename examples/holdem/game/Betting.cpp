#include <examples/holdem/game/Betting.h>

#include <algorithm>

namespace poker::holdem {

void Betting::start(const Stakes& stakes, Street street) {
  stakes_ = stakes;
  size_ = stakes.betOf(street);
  leastRaise_ = size_;
  capped_ = fixedLimit() && players_.remaining() > 2;
  aggressor_.reset();
  for (HandPlayer& player : players_) player.acted = false;
}

void Betting::beginPreFlop(const Stakes& stakes) {
  start(stakes, Street::PreFlop);
  // Also when the player could not pay all of it.
  level_ = fullLevel_ = stakes.bigBlind;
  bets_ = 1;
  turn_.reset();
}

void Betting::begin(const Stakes& stakes, Street street) {
  start(stakes, street);
  level_ = fullLevel_ = kZeroMoney;
  bets_ = 0;
  passTurn(0);
}

bool Betting::act(UserAction action, RealMoneyType amount) {
  const auto option = options_.options().find(action);
  if (!turn_ || option == options_.options().end()) return false;
  const auto& [least, most] = option->second;
  if (amount == kZeroMoney) amount = least;
  if (amount < least || amount > most) return false;

  const std::size_t index = *turn_;
  HandPlayer& player = players_[index];
  if (action == UserAction::Fold) {
    player.folded = true;
  } else if (amount != kZeroMoney) {
    player.put(amount);
    if (player.bet > level_) raiseTo(index);
  }
  player.acted = true;
  player.lastAction = action;
  player.levelWhenActed = level_;
  player.betsWhenActed = bets_;
  passTurn(index + 1);
  return true;
}

void Betting::raiseTo(std::size_t index) {
  const RealMoneyType& bet = players_[index].bet;
  const RealMoneyType raise = bet - fullLevel_;
  if (fixedLimit()) {
    if (raise * 2 >= size_) {
      ++bets_;
      fullLevel_ = bet;
    }
  } else if (const RealMoneyType above = bet - level_; above >= leastRaise_) {
    leastRaise_ = above;
  }
  level_ = bet;
  aggressor_ = index;
}

std::uint8_t Betting::raisesLeft() const {
  if (!capped_) return kManyRaises;
  return static_cast<std::uint8_t>(std::min(kMostBets - bets_, kMostBets - 1));
}

bool Betting::anotherCanAct(std::size_t index) const {
  for (std::size_t i = 0; i < players_.size(); ++i) {
    if (i != index && players_[i].canAct()) return true;
  }
  return false;
}

RealMoneyType Betting::toCall(std::size_t index) const {
  RealMoneyType price = level_;
  if (!anotherCanAct(index)) {
    // Nobody can put in more than the others have by now.
    price = kZeroMoney;
    for (std::size_t i = 0; i < players_.size(); ++i) {
      if (i != index && !players_[i].folded) price = std::max(price, players_[i].bet);
    }
  }
  return std::max(price - players_[index].bet, kZeroMoney);
}

bool Betting::mayRaise(std::size_t index) const {
  const HandPlayer& player = players_[index];
  if (!anotherCanAct(index)) return false;
  if (capped_ && bets_ >= kMostBets) return false;
  if (!player.acted) return true;
  return fixedLimit() ? bets_ > player.betsWhenActed : level_ - player.levelWhenActed >= leastRaise_;
}

void Betting::passTurn(std::size_t first) {
  turn_.reset();
  if (players_.remaining() > 1) {
    for (std::size_t step = 0; step < players_.size() && !turn_; ++step) {
      const std::size_t i = (first + step) % players_.size();
      if (!players_[i].canAct()) continue;
      if (toCall(i) > kZeroMoney || (!players_[i].acted && anotherCanAct(i))) turn_ = i;
    }
  }
  findOptions();
}

void Betting::findOptions() {
  options_.clear();
  if (!turn_) return;
  const HandPlayer& player = players_[*turn_];
  const RealMoneyType call = toCall(*turn_);
  options_.addFoldOption();
  if (call == kZeroMoney) {
    options_.addCheckOption();
  } else {
    options_.addOption(UserAction::Call, std::min(call, player.stack));
  }
  if (player.stack <= call || !mayRaise(*turn_)) return;

  const RealMoneyType least = (fixedLimit() ? fullLevel_ + size_ : level_ + leastRaise_) - player.bet;
  const UserAction raise = level_ == kZeroMoney ? UserAction::Bet : UserAction::Raise;
  if (player.stack <= least) {
    options_.addOption(UserAction::AllIn, player.stack);
  } else if (fixedLimit()) {
    options_.addOption(raise, least);
  } else {
    options_.addOption(raise, least, player.stack);
    options_.addOption(UserAction::AllIn, player.stack);
  }
}

std::optional<Betting::Uncalled> Betting::returnUncalled() {
  if (players_.size() < 2) return std::nullopt;
  std::size_t highest = 0;
  RealMoneyType second;
  for (std::size_t i = 1; i < players_.size(); ++i) {
    if (players_[i].bet > players_[highest].bet) {
      second = players_[highest].bet;
      highest = i;
    } else {
      second = std::max(second, players_[i].bet);
    }
  }
  HandPlayer& player = players_[highest];
  const RealMoneyType uncalled = player.bet - second;
  if (uncalled == kZeroMoney) return std::nullopt;
  player.put(uncalled * -1);
  return Uncalled{highest, uncalled};
}

}  // namespace poker::holdem
