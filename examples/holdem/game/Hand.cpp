#include <examples/holdem/game/Hand.h>

#include <algorithm>

namespace poker::holdem {

void Hand::begin(const Stakes& stakes, const HandPlan& plan, Deck& deck) {
  stakes_ = stakes;
  plan_ = plan;
  deck_ = &deck;
  pots_.clear();
  street_ = Street::PreFlop;
  boardSize_ = 0;
  finalistCount_ = 0;
  wins_.clear();
  over_ = false;
  betting_.beginPreFlop(stakes_);
  postBlinds();
  deal();
  const HandPlayer* bigBlind = players_.find(plan_.bigBlind);
  betting_.blindsPosted(static_cast<std::size_t>(bigBlind - players_.begin()));
  run();
}

void Hand::postBlinds() {
  const auto post = [&](const SeatID& seat, UserAction blind, const RealMoneyType& amount) {
    HandPlayer& player = *players_.find(seat);
    const RealMoneyType paid = std::min(amount, player.stack);
    player.put(paid);
    player.lastAction = blind;
    events_.onBlind(player, blind, paid);
  };
  if (plan_.smallBlind.isValid()) post(plan_.smallBlind, UserAction::SmallBlind, stakes_.smallBlind);
  post(plan_.bigBlind, UserAction::BigBlind, stakes_.bigBlind);
  for (std::size_t i = 0; i < plan_.size; ++i) {
    const HandPlan::Seat& seat = plan_.seats[i];
    if (!seat.postsBig && !seat.postsSmall) continue;
    HandPlayer& player = *players_.find(seat.seat);
    const RealMoneyType live = seat.postsBig ? std::min(stakes_.bigBlind, player.stack) : kZeroMoney;
    player.put(live);
    player.dead = seat.postsSmall ? std::min(stakes_.smallBlind, player.stack) : kZeroMoney;
    player.stack -= player.dead;
    player.lastAction = UserAction::Post;
    events_.onBlind(player, UserAction::Post, live + player.dead);
  }
}

void Hand::deal() {
  for (std::size_t round = 0; round < 2; ++round) {
    for (HandPlayer& player : players_) player.cards[round] = deck_->deal();
  }
  events_.onDealt();
}

const HandPlayer* Hand::turn() const {
  if (over_ || !betting_.turn()) return nullptr;
  return &players_[*betting_.turn()];
}

bool Hand::act(UserAction action, const RealMoneyType& amount) {
  if (turn() == nullptr) return false;
  const HandPlayer& player = *turn();
  const RealMoneyType before = player.stack;
  if (!betting_.act(action, amount)) return false;
  events_.onAction(player, action, before - player.stack);
  run();
  return true;
}

void Hand::run() {
  while (!betting_.turn()) {
    endRound();
    if (players_.remaining() == 1 || street_ == Street::River) return showDown();
    if (bettingIsOver()) {
      for (HandPlayer& player : players_) turnUp(player);
    }
    street_ = static_cast<Street>(static_cast<unsigned>(street_) + 1);
    dealBoard();
    betting_.begin(stakes_, street_);
  }
}

void Hand::endRound() {
  if (const auto uncalled = betting_.returnUncalled()) {
    events_.onUncalled(players_[uncalled->player], uncalled->amount);
  }
  pots_.collect(players_, street_ == Street::PreFlop ? RakeRule() : stakes_.rake);
  for (HandPlayer& player : players_) {
    player.bet = kZeroMoney;
    player.lastAction = UserAction::NoAction;
  }
  events_.onRoundOver(street_);
}

/// Nobody, or one player alone, has chips to bet with.
bool Hand::bettingIsOver() const {
  return std::count_if(players_.begin(), players_.end(), [](const HandPlayer& p) { return p.canAct(); }) < 2;
}

void Hand::dealBoard() {
  const std::size_t before = boardSize_;
  const std::size_t count = street_ == Street::Flop ? 3 : 1;
  for (std::size_t i = 0; i < count; ++i) board_[boardSize_++] = deck_->deal();
  events_.onBoard(street_, board().subspan(before));
}

void Hand::turnUp(HandPlayer& player) {
  if (player.folded || player.turnedUp) return;
  player.turnedUp = true;
  events_.onTurnedUp(player);
}

HandValue Hand::valueOf(const HandPlayer& player) const {
  std::array<Card, 7> cards;
  std::copy(player.cards.begin(), player.cards.end(), cards.begin());
  std::copy(board_.begin(), board_.begin() + boardSize_, cards.begin() + 2);
  return boardSize_ == 5 ? HandValue::best(cards) : HandValue();
}

void Hand::showDown() {
  // Who bet last in the last round shows first; when nobody did, who sits first after the button.
  const std::size_t first = street_ == Street::River ? betting_.aggressor().value_or(0) : 0;
  for (std::size_t step = 0; step < players_.size(); ++step) {
    const std::size_t i = (first + step) % players_.size();
    if (!players_[i].folded) finalists_[finalistCount_++] = static_cast<std::uint8_t>(i);
  }
  showOrMuck();
  award();
  over_ = true;
  events_.onOver();
}

/// In turn, each player shows who beats or equals all that were shown for one of the pots; the others need not.
void Hand::showOrMuck() {
  std::array<HandValue, kMaxSeats> best;  // shown so far, by pot
  for (const std::uint8_t index : finalists()) {
    HandPlayer& player = players_[index];
    const HandValue value = valueOf(player);
    bool shows = player.turnedUp;
    if (finalistCount_ > 1) {
      for (std::size_t pot = 0; pot < pots_.size(); ++pot) {
        if (pots_[pot].contenders.test(index) && value >= best[pot]) shows = true;
      }
    }
    if (!shows && !events_.showsAnyway(player)) continue;
    turnUp(player);
    for (std::size_t pot = 0; pot < pots_.size(); ++pot) {
      if (pots_[pot].contenders.test(index)) best[pot] = std::max(best[pot], value);
    }
  }
}

void Hand::award() {
  for (std::size_t number = 0; number < pots_.size(); ++number) {
    const Pots::Share& pot = pots_[number];
    std::array<std::size_t, kMaxSeats> winners;
    std::size_t count = 0;
    HandValue best;
    for (std::size_t i = 0; i < players_.size(); ++i) {
      if (!pot.contenders.test(i)) continue;
      const HandValue value = finalistCount_ > 1 ? valueOf(players_[i]) : HandValue();
      if (value > best) count = 0;
      if (value >= best) {
        best = value;
        winners[count++] = i;
      }
    }
    // What cannot be divided goes to the winners who sit first after the button.
    pot.amount.split(count, shares_, 0);
    for (std::size_t i = 0; i < count; ++i) {
      players_[winners[i]].won += shares_[i];
      players_[winners[i]].stack += shares_[i];
      wins_.push_back({static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(winners[i]), shares_[i]});
    }
  }
}

}  // namespace poker::holdem
