#include <inspect/hands/HandRank.h>
#include <inspect/hands/HandView.h>

#include <algorithm>
#include <map>
#include <numeric>

namespace poker {

namespace {

void tell(const TableFacts& table, HandStory& story) {
  story.tournament = table.tournament;
  story.table = table.name.empty() ? table.label : table.name;
  story.seats = table.seats;
  story.game = table.game;
  story.limit = table.limit;
  story.smallBlind = table.smallBlind;
  story.bigBlind = table.bigBlind;
  story.lowBet = table.lowBet;
  story.highBet = table.highBet;
}

}  // namespace

bool isPost(UserAction action) {
  switch (action) {
    case UserAction::SmallBlind:
    case UserAction::BigBlind:
    case UserAction::Post:
    case UserAction::Ante:
    case UserAction::KillBlind:
    case UserAction::Straddle:
    case UserAction::BringIn:
      return true;
    default:
      return false;
  }
}

HandView::HandView(const TableFacts& table, std::span<const TableSeat> seats, const SeatID& viewer,
                   std::uint64_t number, const SeatIDSet& players)
    : label_(table.label) {
  tell(table, story_);
  story_.number = number;
  story_.viewer = viewer;
  for (const SeatID& seat : players) {
    Player& player = players_.emplace_back();
    player.seat = seat;
    const auto known = std::find_if(seats.begin(), seats.end(), [&](const TableSeat& s) { return s.seat == seat; });
    if (known != seats.end()) {
      player.name = known->name;
      player.start = player.stack = known->stack;
    }
    if (player.name.empty()) player.name = "Seat " + std::to_string(seat.value());
  }
}

HandView::HandView(const TableFacts& table, const ClientTableState& state)
    : label_(table.label), phase_(Phase::Betting), whole_(false) {
  tell(table, story_);
  story_.number = state.handNumber;
  story_.viewer = state.ownSeat;
  story_.button = state.dealerSeat;
  for (const ClientSeatState& seat : state.seats) {
    if (seat.cards.empty() && seat.state != UserState::Folded) continue;
    Player& player = players_.emplace_back();
    player.seat = seat.seatID;
    player.name = seat.displayName;
    player.stack = seat.money;
    player.bet = seat.bet;
    player.folded = seat.cards.empty();
    player.cards.assign(seat.cards.begin(), seat.cards.end());
    player.shown = !seat.cards.empty() && std::all_of(seat.cards.begin(), seat.cards.end(), [](const Card& card) {
      return card.visibility() == Card::Visibility::Shown;
    });
  }
  board_.assign(state.board.begin(), state.board.end());
  beginAtButton();
  pots_.push_back(state.pot.mainPot());
  pots_.insert(pots_.end(), state.pot.sidePots().begin(), state.pot.sidePots().end());
}

const HandView::Player* HandView::find(const SeatID& seat) const {
  const auto place =
      std::find_if(players_.begin(), players_.end(), [&](const Player& player) { return player.seat == seat; });
  return place == players_.end() ? nullptr : &*place;
}

std::size_t HandView::remaining() const {
  return static_cast<std::size_t>(
      std::count_if(players_.begin(), players_.end(), [](const Player& player) { return !player.folded; }));
}

RealMoneyType HandView::paid() const {
  RealMoneyType sum;
  for (const Player& player : players_) sum += player.paid + player.dead;
  return sum;
}

RealMoneyType HandView::betSize() const {
  constexpr std::size_t kTurn = 4;  // cards
  if (story_.limit != LimitType::FixedLimit) return story_.bigBlind;
  return board_.size() < kTurn ? story_.lowBet : story_.highBet;
}

void HandView::apply(const SrvMoveDealChip& command) {
  story_.button = command.getSeatID();
  beginAtButton();
}

void HandView::beginAtButton() {
  std::sort(players_.begin(), players_.end(), [](const Player& a, const Player& b) { return a.seat < b.seat; });
  const auto first =
      std::find_if(players_.begin(), players_.end(), [&](const Player& player) { return player.seat > story_.button; });
  std::rotate(players_.begin(), first, players_.end());
}

void HandView::apply(const SrvUserActionNotify& command) {
  Player* player = playerAt(command.getSeatID());
  if (player == nullptr) return;
  const UserAction action = command.getActionCode();
  const RealMoneyType live = command.getTableMoney() - player->bet;
  if (!player->stack) {
    player->stack = command.getFreeMoney() + live;
    if (whole_) player->start = player->stack;
  }
  const RealMoneyType put = *player->stack - command.getFreeMoney();
  const bool gives = action == UserAction::NoAction;
  HandStory::Action told;
  told.seat = player->seat;
  told.action = action;
  told.amount = gives ? kZeroMoney - put : put;
  told.allIn = command.getFreeMoney() == kZeroMoney;
  player->stack = command.getFreeMoney();
  player->bet = command.getTableMoney();
  player->paid += live;
  if (isPost(action)) {
    told.dead = put - live;
    player->dead += told.dead;
  }
  if (action == UserAction::Fold) player->folded = true;
  if (action == UserAction::SmallBlind) {
    smallBlindSeat_ = player->seat;
    if (story_.limit == LimitType::None) story_.smallBlind = std::max(story_.smallBlind, put);
  } else if (action == UserAction::BigBlind) {
    bigBlindSeat_ = player->seat;
    if (story_.limit == LimitType::None) story_.bigBlind = std::max(story_.bigBlind, put);
  }
  if (phase_ == Phase::Begun) {
    story_.posts.push_back(told);
  } else {
    if (story_.rounds.empty()) story_.rounds.emplace_back();
    story_.rounds.back().actions.push_back(told);
  }
}

void HandView::apply(const SrvCardDeal& command) {
  for (const UserCardPack& pack : command.getHands()) {
    Player* player = playerAt(pack.getSeatID());
    if (player != nullptr) player->cards.insert(player->cards.end(), pack.cards().begin(), pack.cards().end());
  }
  if (phase_ != Phase::Begun) return;
  phase_ = Phase::Betting;
  story_.rounds.resize(1);
}

void HandView::apply(const SrvBetRoundComplete& command) {
  for (Player& player : players_) player.bet = kZeroMoney;
  pots_.assign(1, command.getPot().mainPot());
  pots_.insert(pots_.end(), command.getPot().sidePots().begin(), command.getPot().sidePots().end());
  story_.rake = command.rake();
  phase_ = Phase::RoundOver;
}

void HandView::apply(const SrvPotCardDeal& command) {
  HandStory::Round& round = story_.rounds.emplace_back();
  for (const UserCardPack& pack : command.getHands()) {
    round.board.insert(round.board.end(), pack.cards().begin(), pack.cards().end());
  }
  board_.insert(board_.end(), round.board.begin(), round.board.end());
  phase_ = Phase::Betting;
}

void HandView::apply(const SrvShowPlayerCards& command) {
  Player* player = playerAt(command.seatID());
  if (player == nullptr) return;
  player->cards.assign(command.cards().begin(), command.cards().end());
  player->shown = true;
}

void HandView::apply(const SrvTUShowDown& command) {
  for (const SDInfo& last : command.getUserCards()) story_.finalists.push_back(last.getSeatID());
  for (Player& player : players_) {
    const RealMoneyType won = command.wins(player.seat);
    if (won == kZeroMoney) continue;
    wins_.push_back({player.seat, won});
    if (player.stack) *player.stack += won;
  }
  story_.rake = command.casinoProfit();
  story_.over = true;
  phase_ = Phase::Over;
}

std::vector<HandView::Share> HandView::shares() const {
  std::vector<Share> shares;
  RealMoneyType reached;
  for (;;) {
    // The next pot reaches up to the least that a player who is still in has paid beyond the last one.
    std::optional<RealMoneyType> top;
    for (const Player& player : players_) {
      if (!player.folded && player.paid > reached && (!top || player.paid < *top)) top = player.paid;
    }
    if (!top) break;
    Share& share = shares.emplace_back();
    for (std::size_t i = 0; i < players_.size(); ++i) {
      const Player& player = players_[i];
      share.amount += std::max(std::min(player.paid, *top) - reached, kZeroMoney);
      if (!player.folded && player.paid >= *top) share.contenders.push_back(i);
    }
    reached = *top;
  }
  if (shares.empty()) return shares;
  for (const Player& player : players_) {
    shares.front().amount += player.dead;
    shares.back().amount += std::max(player.paid - reached, kZeroMoney);
  }
  return shares;
}

HandStory HandView::story(std::span<const std::vector<Card>> alsoKnown) const {
  HandStory story = story_;
  for (std::size_t i = 0; i < players_.size(); ++i) {
    const Player& player = players_[i];
    HandStory::Player& told = story.players.emplace_back();
    told.seat = player.seat;
    told.name = player.name;
    told.stack = player.start.value_or(kZeroMoney);
    told.cards = player.cards;
    if (player.shown) {
      const HandRank rank = HandRank::of(player.cards, board_);
      if (rank.isHand()) told.value = rank.words();
    } else if (i < alsoKnown.size() && !alsoKnown[i].empty()) {
      told.cards = alsoKnown[i];
    }
  }
  if (isOver()) finishStory(story);
  std::sort(story.players.begin(), story.players.end(),
            [](const HandStory::Player& a, const HandStory::Player& b) { return a.seat < b.seat; });
  return story;
}

/// Commands tell what each player won, but not of which pot: that follows from the cards that were shown.
void HandView::finishStory(HandStory& story) const {
  for (const RealMoneyType& pot : pots_) story.pots.push_back({pot, {}});
  const std::vector<Share> shares = this->shares();
  std::map<SeatID, RealMoneyType> left;
  for (const HandStory::Win& win : wins_) left[win.seat] = win.amount;
  if (story.pots.size() > 1 && shares.size() == story.pots.size()) {
    for (std::size_t number = 0; number < shares.size(); ++number) {
      std::vector<std::size_t> winners;
      HandRank best;
      for (const std::size_t i : shares[number].contenders) {
        const Player& player = players_[i];
        const bool alone = shares[number].contenders.size() == 1;
        const HandRank rank = player.shown ? HandRank::of(player.cards, board_) : HandRank();
        if (!alone && (!rank.isHand() || rank < best)) continue;
        if (rank > best) winners.clear();
        best = rank;
        winners.push_back(i);
      }
      std::vector<RealMoneyType> amounts;
      pots_[number].split(winners.size(), amounts, 0);
      for (std::size_t i = 0; i < winners.size(); ++i) {
        const SeatID seat = players_[winners[i]].seat;
        story.pots[number].wins.push_back({seat, amounts[i]});
        left[seat] -= amounts[i];
      }
    }
    if (std::all_of(left.begin(), left.end(), [](const auto& each) { return each.second == kZeroMoney; })) return;
    // It was shared out otherwise: what is told is told, as of one pot.
  }
  const RealMoneyType total = std::accumulate(pots_.begin(), pots_.end(), kZeroMoney);
  story.pots.assign(1, {total, wins_});
}

}  // namespace poker
