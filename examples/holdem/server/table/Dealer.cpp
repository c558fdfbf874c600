#include <examples/holdem/server/table/Dealer.h>

#include <CommandProcessor/commands/AllCommands.h>
#include <examples/holdem/shared/Protocol.h>

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace poker::holdem {

namespace {

/// What a player may choose in advance, but for what holds beyond a turn: SittingOut, Post and ShowCards.
constexpr std::array kTurnChoices = {UserAction::Check, UserAction::Bet,  UserAction::Call,
                                     UserAction::Raise, UserAction::Fold, UserAction::AllIn};
constexpr std::array kLastingChoices = {UserAction::Post, UserAction::SittingOut, UserAction::ShowCards};

}  // namespace

Dealer::Dealer(asio::io_context& context, const TableSettings& settings, Seats& seats, Audience& audience,
               DealerHost& host)
    : settings_(settings), seats_(seats), audience_(audience), host_(host), hand_(*this), timer_(context) {}

RealMoneyType Dealer::stackOf(const Seat& seat) const {
  const HandPlayer* player = playerOf(seat.id());
  return player != nullptr ? player->stack : seat.stack;
}

UserState Dealer::stateOf(const Seat& seat) const {
  const HandPlayer* player = playerOf(seat.id());
  if (player != nullptr && player->folded) return UserState::Folded;
  if (!audience_.connectionOf(seat.id()).isValid()) return UserState::Disconnected;
  if (player != nullptr) return player->stack == kZeroMoney ? UserState::AllIn : UserState::Playing;
  if (seat.sitsOut) return UserState::SittingOut;
  return seat.blinds.owes() ? UserState::WaitBigBlind : UserState::Waiting;
}

void Dealer::deal(std::uint64_t number, const HandPlan& plan, Deck& deck) {
  record_.begin(number);
  handTold_ = number;
  inPots_ = kZeroMoney;
  SeatIDSet players;
  for (std::size_t i = 0; i < plan.size; ++i) {
    players.insert(plan.seats[i].seat);
    Seat& seat = *seats_.find(plan.seats[i].seat);
    seat.announced = UserState::Playing;
    clearTurnChoices(seat.id());
    choices_.removeOption(UserAction::ShowCards, seat.id());
  }
  audience_.tellAll<SrvUpdateHintText>(kHandNumberHint, fmt::format("{}", number).c_str());
  audience_.tellAll<SrvGameStart>(players);
  audience_.tellAll<SrvMoveDealChip>(plan.button);
  hand_.begin(
      settings_.stakes, plan, [&](const SeatID& seat) { return seats_.find(seat)->stack; }, deck);
  proceed();
}

// Turns

void Dealer::proceed() {
  timer_.cancel();
  asked_ = SeatID();
  while (hand_.turn() != nullptr) {
    const SeatID seat = hand_.turn()->seat;
    const Seat& player = *seats_.find(seat);
    if (player.leaves) {
      hand_.act(UserAction::Fold, kZeroMoney);
    } else if (playInAdvance(seat)) {
      ++turns_.inAdvance;
    } else if (player.sitsOut && (settings_.dealsInSitters || !audience_.connectionOf(seat).isValid())) {
      checkOrFold();  // did not answer before, and is gone or waits for nothing
    } else {
      return ask();
    }
  }
}

bool Dealer::playInAdvance(const SeatID& seat) {
  offered_.clear();
  for (const auto& [action, range] : hand_.options().options()) offered_.set(action, range.first);
  const auto [action, amount] = choices_.match(offered_, seat);
  if (action == UserAction::NoAction) return false;
  return hand_.act(action, amount);
}

void Dealer::ask() {
  ++turns_.asked;
  asked_ = hand_.turn()->seat;
  deadline_ = Clock::now() + settings_.replyTime;
  timer_.expires_at(deadline_);
  timer_.async_wait([this](const std::error_code& cancelled) {
    if (!cancelled) audience_.outbox().run([this] { onReplyTime(); });
  });
  askOne(asked_, false);
}

void Dealer::askOne(const SeatID& seat, bool again) {
  static const NextTurnOptions kNoOptions;
  if (audience_.connectionOf(seat).isValid()) ++seats_.find(seat)->turnsUnderWay;
  audience_.tellSeat<SrvUserTurn>(seat, seat, true, hand_.options(), secondsLeft());
  if (!again) audience_.tellAllBut<SrvUserTurn>(seat, seat, false, kNoOptions, secondsLeft());
}

/// Rounded up; a byte's worth.
unsigned Dealer::secondsLeft() const {
  if (!asked_.isValid()) return 0;
  const auto left = std::chrono::ceil<std::chrono::seconds>(deadline_ - Clock::now()).count();
  return static_cast<unsigned>(std::clamp<std::int64_t>(left, 0, 255));
}

void Dealer::onReplyTime() {
  // The timer may have run out just when the answer came.
  if (!asked_.isValid() || Clock::now() < deadline_) return;
  ++turns_.timedOut;
  Seat& seat = *seats_.find(asked_);
  seat.sitsOut = true;
  seat.awaySince = std::min(seat.awaySince, Clock::now());
  checkOrFold();
  proceed();
  host_.onTimePlayed();
}

void Dealer::checkOrFold() {
  if (!hand_.act(UserAction::Check, kZeroMoney)) hand_.act(UserAction::Fold, kZeroMoney);
}

void Dealer::acknowledgeTurn(const SeatID& seat) {
  unsigned& underWay = seats_.find(seat)->turnsUnderWay;
  if (underWay != 0) --underWay;
}

void Dealer::act(const SeatID& seat, UserAction action, const RealMoneyType& amount) {
  // What was sent before the last turn was seen is not an answer to it.
  if (asked_ != seat || !asked_.isValid() || seats_.find(seat)->turnsUnderWay != 0) return;
  if (!hand_.act(action, amount)) return;
  ++turns_.answered;
  proceed();
}

void Dealer::choose(const SeatID& seat, std::uint32_t actions, const RealMoneyType& amount, bool on) {
  const auto apply = [&](UserAction action) {
    if ((actions & actionBit(action)) == 0) return;
    if (on) {
      choices_.addOption(action, std::max(amount, kZeroMoney), seat);
    } else {
      choices_.removeOption(action, seat);
    }
  };
  std::for_each(kTurnChoices.begin(), kTurnChoices.end(), apply);
  std::for_each(kLastingChoices.begin(), kLastingChoices.end(), apply);
}

bool Dealer::hasChosen(const SeatID& seat, UserAction action) const {
  ActionOptionsManager::Amounts offer;
  offer.set(action, kZeroMoney);
  return choices_.match(offer, seat).first == action;
}

void Dealer::clearTurnChoices(const SeatID& seat) {
  for (const UserAction action : kTurnChoices) choices_.removeOption(action, seat);
}

void Dealer::playerLeaves(const SeatID& seat) {
  if (asked_ != seat || !asked_.isValid()) return;
  ++turns_.left;
  proceed();
}

void Dealer::playerReturns(const SeatID& seat) {
  if (asked_ == seat && asked_.isValid()) askOne(seat, true);
}

// What happens in the hand, told to the viewers

void Dealer::tell(const HandPlayer& player, UserAction action) {
  audience_.tellAll<SrvUserActionNotify>(player.seat, action, player.stack, player.bet, hand_.raisesLeft());
  Seat& seat = *seats_.find(player.seat);
  if (action == UserAction::Fold) {
    seat.announced = UserState::Folded;
  } else if (action != UserAction::NoAction && player.stack == kZeroMoney && seat.announced == UserState::Playing) {
    seat.announced = UserState::AllIn;
  }
}

void Dealer::onBlind(const HandPlayer& player, UserAction blind, const RealMoneyType& amount) {
  record_.add(Street::PreFlop, player.seat, blind, amount, player.dead);
  audience_.tellAll<SrvPostBlind>(player.seat, actionBit(blind));
  tell(player, blind);
}

void Dealer::onDealt() {
  for (const HandPlan::Seat& seat : std::span(hand_.plan().seats).first(hand_.plan().size)) {
    const UserAction blind = seat.seat == hand_.plan().smallBlind ? UserAction::SmallBlind
                             : seat.seat == hand_.plan().bigBlind ? UserAction::BigBlind
                             : seat.postsBig || seat.postsSmall   ? UserAction::Post
                                                                  : UserAction::NoAction;
    audience_.tellSeat<SrvHoldemPlayerPos>(seat.seat, blind);
  }
  const auto packsFor = [&](const SeatID& viewer) {
    packs_.clear();
    for (const HandPlayer& player : hand_.players()) {
      UserCardPack& pack = packs_.emplace_back();
      pack.setSeatID(player.seat);
      pack.cards() = cardsFor(player, viewer);
    }
  };
  onlookers_ = audience_.viewers();
  for (const HandPlayer& player : hand_.players()) {
    const ConnectionID& connection = audience_.connectionOf(player.seat);
    if (!connection.isValid()) continue;
    onlookers_.erase(connection);
    packsFor(player.seat);
    audience_.tellSeat<SrvCardDeal>(player.seat, packs_);
  }
  if (onlookers_.empty()) return;
  packsFor(SeatID());
  audience_.outbox().add<SrvCardDeal>(onlookers_, packs_);
}

/// The cards of a player as the viewer may see them; valid until the next call.
const CardVector& Dealer::cardsFor(const HandPlayer& player, const SeatID& viewer) const {
  cards_.clear();
  for (const Card& card : player.cards) {
    if (player.turnedUp) {
      cards_.emplace_back(card.suit(), card.rank(), Card::Visibility::Shown);
    } else if (viewer.isValid() && viewer == player.seat) {
      cards_.emplace_back(card.suit(), card.rank(), Card::Visibility::HiddenOwner);
    } else {
      cards_.emplace_back();
    }
  }
  return cards_;
}

void Dealer::onAction(const HandPlayer& player, UserAction action, const RealMoneyType& amount) {
  record_.add(hand_.street(), player.seat, action, amount);
  clearTurnChoices(player.seat);
  tell(player, action);
}

void Dealer::onUncalled(const HandPlayer& player, const RealMoneyType& amount) {
  record_.add(hand_.street(), player.seat, UserAction::NoAction, amount);
  tell(player, UserAction::NoAction);
}

void Dealer::fillPot() const {
  pot_.clear();
  for (const Pots::Share& share : hand_.pots()) {
    if (&share == hand_.pots().begin()) {
      pot_.setMainPot(share.amount);
    } else {
      pot_.addSidePot(share.amount);
    }
  }
}

void Dealer::onRoundOver(Street street) {
  for (const HandPlayer& player : hand_.players()) clearTurnChoices(player.seat);
  const auto canAct = std::count_if(hand_.players().begin(), hand_.players().end(),
                                    [](const HandPlayer& player) { return player.canAct(); });
  const bool goesOn = street != Street::River && hand_.players().remaining() > 1 && canAct > 1;
  const Street next = street == Street::River ? street : static_cast<Street>(static_cast<unsigned>(street) + 1);
  fillPot();
  const RealMoneyType inPots = pot_.total() + hand_.pots().rake();
  const bool chipsMove = std::exchange(inPots_, inPots) != inPots;
  audience_.tellAll<SrvBetRoundComplete>(pot_, chipsMove, goesOn, settings_.stakes.betOf(next), hand_.pots().rake());
}

void Dealer::onBoard(Street, std::span<const Card> cards) {
  packs_.clear();
  CardVector& pack = packs_.emplace_back().cards();
  pack.clear();
  for (const Card& card : cards) pack.emplace_back(card.suit(), card.rank(), Card::Visibility::Shown);
  audience_.tellAll<SrvPotCardDeal>(packs_);
}

void Dealer::onTurnedUp(const HandPlayer& player) {
  audience_.tellAll<SrvShowPlayerCards>(player.seat, cardsFor(player, SeatID()));
}

bool Dealer::showsAnyway(const HandPlayer& player) { return hasChosen(player.seat, UserAction::ShowCards); }

void Dealer::onOver() {
  record_.end();
  host_.onHandOver();
  const bool contested = hand_.finalists().size() > 1;
  CommandHandle<SrvTUShowDown> showDown = make<SrvTUShowDown>(hand_.pots().rake());
  for (const std::uint8_t index : hand_.finalists()) {
    const HandPlayer& player = hand_.players()[index];
    const SDInfo::WinnerType type = player.won == kZeroMoney ? SDInfo::NotWinner
                                    : contested              ? SDInfo::Winner
                                                             : SDInfo::Uncalled;
    showDown->addFinalUser(cardsFor(player, SeatID()), player.seat, player.won, type);
  }
  for (const HandPlayer& player : hand_.players()) {
    showDown->addPlayerInfo(player.seat, player.paid + player.dead, player.won);
    UserState& announced = seats_.find(player.seat)->announced;
    if (announced != UserState::Disconnected) announced = UserState::Waiting;
  }
  if (!audience_.viewers().empty()) audience_.outbox().put(std::move(showDown), audience_.viewers());
  handTold_ = 0;
}

void Dealer::describe(ClientTableState& state, const SeatID& viewer) const {
  if (!isPlaying()) return;
  state.handNumber = record_.number();
  for (ClientSeatState& seat : state.seats) {
    const HandPlayer* player = hand_.players().find(seat.seatID);
    if (player == nullptr) continue;
    seat.bet = player->bet;
    seat.lastAction = player->lastAction;
    if (!player->folded) seat.cards = cardsFor(*player, viewer);
  }
  fillPot();
  state.pot = pot_;
  for (const Card& card : hand_.board()) {
    state.board.emplace_back(card.suit(), card.rank(), Card::Visibility::Shown);
  }
  state.turnSeat = asked_;
  state.turnTimeLeft = static_cast<std::uint16_t>(secondsLeft());
}

}  // namespace poker::holdem
