#include <examples/holdem/server/table/Table.h>

#include <examples/holdem/game/CardText.h>
#include <examples/holdem/server/CutText.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

namespace poker::holdem {

namespace {

constexpr std::size_t kLongestChat = 200;  // bytes

constexpr Clock::time_point kNever = Clock::time_point::max();

/// The least that there is.
constexpr RealMoneyType kOneHundredth = RealMoneyType::fromHundredths(1);

}  // namespace

Table::Table(asio::io_context& context, TableSettings settings, Bank& bank, Outbox& outbox, TableHost& host)
    : settings_(std::move(settings)),
      bank_(bank),
      host_(host),
      audience_(outbox),
      dealer_(context, settings_, seats_, audience_, *this),
      handTimer_(context),
      seatTimer_(context) {
  if (settings_.seed) random_.emplace<std::mt19937_64>(*settings_.seed + settings_.gameID);
  for (const SeatedPlayer& player : bank_.seated(settings_.gameID)) {
    Seat& seat = seats_.take(player.seat);
    seat.account = player.account;
    seat.name = player.name;
    seat.stack = player.stack;
    seat.blinds.owesBig = true;
    seat.announced = UserState::Disconnected;
    seat.awaySince = Clock::now();
    if (seat.stack == kZeroMoney) seat.rebuyUntil = Clock::now() + settings_.rebuyTime;
  }
  armSeatTimer();
}

std::uint64_t Table::draw() {
  return std::visit([](auto& generator) { return static_cast<std::uint64_t>(generator()); }, random_);
}

SeatID Table::seatOf(AccountID account) {
  const Seat* seat = seats_.findAccount(account);
  return seat != nullptr ? seat->id() : SeatID();
}

Seat* Table::seatOf(const ConnectionID& viewer) { return seats_.find(audience_.seatOf(viewer)); }

// Viewers

void Table::enter(const ConnectionID& viewer, AccountID account) {
  audience_.add(viewer);
  Seat* seat = seats_.findAccount(account);
  if (seat != nullptr) {
    // What another connection was asked will not be acknowledged any more.
    if (audience_.connectionOf(seat->id()) != viewer) seat->turnsUnderWay = 0;
    audience_.bind(seat->id(), viewer);
    if (!seat->sitsOut) seat->awaySince = kNever;
    host_.onSeated(viewer, true);
  }
  Outbox& outbox = audience_.outbox();
  outbox.add<SrvConnectGameOK>(viewer, COleDateTime::GetCurrentTime());
  outbox.add<SrvTableState>(viewer, stateFor(seat != nullptr ? seat->id() : SeatID()));
  if (seat != nullptr) {
    dealer_.playerReturns(seat->id());
    // Its last OutOfMoney may have been lost with the old connection.
    if (seat->rebuyUntil != kNever) {
      outbox.add<OutOfMoney>(viewer, bank_.balance(account), SrvErrorCode::NotEnoughMoney);
    }
  }
  afterChange();
}

void Table::leave(const ConnectionID& viewer) {
  Seat* seat = seats_.find(audience_.remove(viewer));
  if (seat == nullptr) return changed();
  seat->awaySince = std::min(seat->awaySince, Clock::now());
  host_.onSeated(viewer, false);
  afterChange();
}

void Table::close() {
  closed_ = true;
  host_.onSeatsChanged(*this);
  handTimer_.cancel();
  afterChange();
}

ClientTableState Table::stateFor(const SeatID& viewer) {
  ClientTableState state;
  describe(settings_, state);
  state.ownSeat = viewer;
  state.dealerSeat = blinds_.button();
  forEachSeat([&](const SeatID& seat, const std::string& name, const RealMoneyType& stack, const RealMoneyType&,
                  UserState standing) {
    ClientSeatState& shown = state.seats.emplace_back();
    shown.seatID = seat;
    shown.displayName = name;
    shown.money = stack;
    shown.state = standing;
  });
  dealer_.describe(state, viewer);
  return state;
}

void Table::changed() {
  ++changes_;
  host_.onTableChanged();
}

// Held seats

SeatID Table::freeSeat() {
  for (SeatID::value_type seat = 0; seat < settings_.seats && !closed_; ++seat) {
    if (seats_.find(seat) == nullptr && !held_.contains(seat)) return seat;
  }
  return {};
}

void Table::hold(const SeatID& seat, const Account& account) {
  held_[seat] = {account.id, account.name};
  audience_.tellAll<SrvUserStateOnTable>(seat, account.name.c_str(), kZeroMoney, UserState::Reserved);
  changed();
}

void Table::release(const SeatID& seat) {
  const auto held = held_.extract(seat);
  if (!held) return;
  audience_.tellAll<SrvUserStateOnTable>(seat, held.mapped().name.c_str(), kZeroMoney, UserState::Empty);
  host_.onSeatsChanged(*this);
  changed();
}

// Seats and chips

/// What the account left the table with not long ago; otherwise zero.
RealMoneyType Table::lastStack(AccountID account) const {
  const auto last = lastSittings_.find(account);
  return last == lastSittings_.end() || last->second.until <= Clock::now() ? kZeroMoney : last->second.stack;
}

std::optional<SrvErrorCode> Table::whyNotSit(const Account& account, const SeatID& seat, const RealMoneyType& money) {
  if (closed_ || seats_.findAccount(account.id) != nullptr) return SrvErrorCode::NotAllowed;
  if (seat.value() >= settings_.seats || seats_.find(seat) != nullptr) return SrvErrorCode::SeatTaken;
  if (const auto held = held_.find(seat); held != held_.end() && held->second.account != account.id) {
    return SrvErrorCode::SeatTaken;
  }
  const RealMoneyType last = lastStack(account.id);
  if (money < settings_.minBuyIn) return SrvErrorCode::NotEnoughMoney;
  if (money < last) return SrvErrorCode::LessThanLastSitting;
  if (money > std::max(settings_.maxBuyIn, last)) return SrvErrorCode::RebuyTooLarge;
  if (!bank_.sitDown(account.id, settings_.gameID, seat, money)) return SrvErrorCode::NotEnoughMoney;
  return std::nullopt;
}

void Table::sitDown(const ConnectionID& viewer, const Account& account, const SeatID& seat,
                    const RealMoneyType& money) {
  if (const auto error = whyNotSit(account, seat, money)) {
    audience_.outbox().add<SrvSitError>(viewer, *error, kZeroMoney);
    return;
  }
  held_.erase(seat);
  Seat& taken = seats_.take(seat);
  taken.account = account.id;
  taken.name = account.name;
  taken.stack = money;
  taken.blinds.owesBig = true;
  audience_.bind(seat, viewer);
  host_.onSeated(viewer, true);
  host_.onSeatsChanged(*this);
  audience_.outbox().add<SrvSitOk>(viewer, seat);
  taken.announced = dealer_.stateOf(taken);
  audience_.tellAll<SrvUserStateOnTable>(seat, taken.name.c_str(), taken.stack, taken.announced);
  afterChange();
}

void Table::leaveSeat(const ConnectionID& viewer) {
  Seat* seat = seatOf(viewer);
  if (seat == nullptr) return;
  seat->leaves = true;
  dealer_.playerLeaves(seat->id());
  afterChange();
}

void Table::standUp(Seat& seat) {
  const SeatID id = seat.id();
  const ConnectionID connection = audience_.connectionOf(id);
  const RealMoneyType stack = bank_.standUp(seat.account);
  std::erase_if(lastSittings_, [](const auto& entry) { return entry.second.until <= Clock::now(); });
  lastSittings_[seat.account] = {stack, Clock::now() + settings_.lastSitting};
  audience_.tellAll<SrvUserStateOnTable>(id, seat.name.c_str(), kZeroMoney, UserState::Empty);
  dealer_.forget(id);
  seats_.free(id);
  host_.onSeatsChanged(*this);
  audience_.tellAll<SrvPlayerLeave>(settings_.gameID, static_cast<unsigned>(seats_.taken()));
  if (!connection.isValid()) return;
  audience_.bind(id, ConnectionID());
  host_.onSeated(connection, false);
}

void Table::comeBack(const ConnectionID& viewer) {
  Seat* seat = seatOf(viewer);
  if (seat == nullptr) return;
  seat->sitsOut = false;
  seat->awaySince = kNever;
  dealer_.choose(seat->id(), actionBit(UserAction::SittingOut), kZeroMoney, false);
  audience_.outbox().add<SrvBackOnSeatOk>(viewer, seat->id());
  afterChange();
}

void Table::tellMoney(const ConnectionID& viewer, AccountID account) {
  tellMoneyOf(viewer, account, seats_.findAccount(account));
}

void Table::tellMoneyOf(const ConnectionID& viewer, AccountID account, const Seat* seat) {
  const RealMoneyType last = lastStack(account);
  const RealMoneyType atTable = seat != nullptr ? dealer_.stackOf(*seat) : kZeroMoney;
  const bool hasChips = atTable > kZeroMoney;
  const RealMoneyType least =
      hasChips ? kOneHundredth : std::max(settings_.minBuyIn, seat == nullptr ? last : kZeroMoney);
  const RealMoneyType most = seat != nullptr ? settings_.maxBuyIn - atTable : std::max(settings_.maxBuyIn, last);
  audience_.outbox().add<SrvMoney>(viewer, bank_.balance(account), atTable, least, std::max(most, kZeroMoney));
}

std::optional<SrvErrorCode> Table::whyNotMore(const Seat& seat, const RealMoneyType& amount) {
  const RealMoneyType stack = dealer_.stackOf(seat);
  const bool isBroke = stack == kZeroMoney && dealer_.playerOf(seat.id()) == nullptr;
  if (amount < (isBroke ? settings_.minBuyIn : kOneHundredth)) return SrvErrorCode::NotEnoughMoney;
  if (stack + seat.orderedChips + amount > settings_.maxBuyIn) return SrvErrorCode::RebuyTooLarge;
  if (bank_.balance(seat.account) < seat.orderedChips + amount) return SrvErrorCode::NotEnoughMoney;
  return std::nullopt;
}

void Table::bringMore(const ConnectionID& viewer, const RealMoneyType& amount) {
  Seat* seat = seatOf(viewer);
  if (seat == nullptr) return;
  if (const auto error = whyNotMore(*seat, amount)) {
    audience_.outbox().add<SrvSitError>(viewer, *error, kZeroMoney);
  } else if (dealer_.playerOf(seat->id()) != nullptr) {
    seat->orderedChips += amount;
  } else {
    addChips(*seat, amount);
  }
  afterChange();
}

/// Between hands.
void Table::addChips(Seat& seat, const RealMoneyType& amount) {
  const ConnectionID& viewer = audience_.connectionOf(seat.id());
  if (!bank_.addChips(seat.account, amount)) {
    audience_.outbox().add<SrvSitError>(viewer, SrvErrorCode::NotEnoughMoney, kZeroMoney);
    return;
  }
  seat.stack += amount;
  seat.rebuyUntil = kNever;
  if (viewer.isValid()) tellMoneyOf(viewer, seat.account, &seat);
  seat.announced = dealer_.stateOf(seat);
  audience_.tellAll<SrvUserStateOnTable>(seat.id(), seat.name.c_str(), seat.stack, seat.announced);
}

// What players do

void Table::act(const ConnectionID& viewer, UserAction action, const RealMoneyType& amount) {
  const SeatID seat = audience_.seatOf(viewer);
  if (!seat.isValid()) return;
  dealer_.act(seat, action, amount);
  afterChange();
}

void Table::acknowledgeTurn(const ConnectionID& viewer) {
  const SeatID seat = audience_.seatOf(viewer);
  if (seat.isValid()) dealer_.acknowledgeTurn(seat);
}

void Table::choose(const ConnectionID& viewer, std::uint32_t actions, const RealMoneyType& amount, bool on) {
  const SeatID seat = audience_.seatOf(viewer);
  if (!seat.isValid()) return;
  dealer_.choose(seat, actions, amount, on);
  afterChange();
}

void Table::chat(const ConnectionID& viewer, const std::string& name, const std::string& text,
                 ChatMsgTypes::ChatStyle style) {
  if (!audience_.contains(viewer) || text.empty()) return;
  const bool isPlayer = audience_.seatOf(viewer).isValid();
  const std::string line = text.size() > kLongestChat ? cutTo(kLongestChat, text) : text;
  audience_.tellAll<SrvChatMsg>(line.c_str(), name.c_str(),
                                isPlayer ? ChatMsgTypes::PlayerChat : ChatMsgTypes::ObserverChat, style);
}

bool Table::script(const SeatID& button, unsigned players, const std::string& cards) {
  auto parsed = cardsFromText(cards);
  if (!parsed) return false;
  try {
    Deck().stack(*parsed);
  } catch (const std::invalid_argument&) {
    return false;
  }
  script_ = Script{button, players, std::move(*parsed)};
  afterChange();
  return true;
}

// Between hands

void Table::onHandOver() {
  const Hand& hand = dealer_.hand();
  booking_.game = settings_.gameID;
  booking_.number = dealer_.record().number();
  booking_.record = dealer_.record().toJson(settings_, hand, seats_);
  booking_.rake = hand.pots().rake();
  booking_.began = dealer_.record().began();
  booking_.ended = dealer_.record().ended();
  booking_.players.clear();
  for (const HandPlayer& player : hand.players()) {
    const Seat& seat = *seats_.find(player.seat);
    booking_.players.push_back({seat.account, seat.stack, player.stack, player.won > kZeroMoney});
  }
  ++handsPlayed_;
  host_.finishHand(booking_, hand);
  for (const HandPlayer& player : hand.players()) seats_.find(player.seat)->stack = player.stack;
  countHand(hand);
  handJustOver_ = true;
}

void Table::countHand(const Hand& hand) {
  TableStatistics::PlayedHand played;
  played.pot = hand.pots().rake();
  for (const Pots::Share& pot : hand.pots()) played.pot += pot.amount;
  played.dealt = static_cast<unsigned>(hand.players().size());
  if (!hand.board().empty()) {
    played.sawFlop = played.dealt - static_cast<unsigned>(dealer_.record().count(Street::PreFlop, UserAction::Fold));
  }
  played.began = handBegan_;
  played.ended = Clock::now();
  statistics_.add(played);
}

/// What follows from whatever has happened.
void Table::afterChange() {
  if (std::exchange(handJustOver_, false)) afterHand();
  tidySeats();
  announceChanges();
  scheduleHand();
  armSeatTimer();
  if (closed_ && !closeTold_ && !dealer_.isPlaying()) {
    closeTold_ = true;
    host_.onTableClosed();
  }
  changed();
}

void Table::afterHand() {
  seats_.forEach([&](Seat& seat) {
    if (RealMoneyType ordered = std::exchange(seat.orderedChips, kZeroMoney); ordered > kZeroMoney && !seat.leaves) {
      // The stack may have grown in the hand.
      ordered = std::min(ordered, settings_.maxBuyIn - seat.stack);
      if (ordered > kZeroMoney) {
        addChips(seat, ordered);
      } else {
        audience_.tellSeat<SrvSitError>(seat.id(), SrvErrorCode::RebuyTooLarge, kZeroMoney);
      }
    }
    if (seat.stack == kZeroMoney && seat.rebuyUntil == kNever && !seat.leaves) {
      seat.rebuyUntil = Clock::now() + settings_.rebuyTime;
      audience_.tellSeat<OutOfMoney>(seat.id(), bank_.balance(seat.account), SrvErrorCode::NotEnoughMoney);
    }
  });
  if (isPlayedOut()) {
    closed_ = true;
    host_.onSeatsChanged(*this);
  }
  host_.onHandOver(settings_.gameID, handsPlayed_);
}

/// Seats whose players are in no hand: those who sit out from now on, and those who lose their seat.
void Table::tidySeats() {
  const Clock::time_point now = Clock::now();
  seats_.forEach([&](Seat& seat) {
    if (dealer_.playerOf(seat.id()) != nullptr) return;
    if (!seat.sitsOut && dealer_.hasChosen(seat.id(), UserAction::SittingOut)) {
      seat.sitsOut = true;
      seat.awaySince = std::min(seat.awaySince, now);
    }
    const bool isGone = seat.awaySince != kNever && seat.awaySince + settings_.keepSeat <= now;
    if (seat.leaves || seat.rebuyUntil <= now || isGone) standUp(seat);
  });
}

void Table::announceChanges() {
  seats_.forEach([&](Seat& seat) {
    const UserState state = dealer_.stateOf(seat);
    if (state == seat.announced) return;
    seat.announced = state;
    audience_.tellAll<SrvUserStateOnTable>(seat.id(), seat.name.c_str(), dealer_.stackOf(seat), state);
  });
}

bool Table::isReady(const Seat& seat) const {
  return audience_.connectionOf(seat.id()).isValid() && !seat.sitsOut && !seat.leaves && seat.stack > kZeroMoney;
}

bool Table::mayBegin() {
  if (closed_ || dealer_.isPlaying()) return false;
  std::size_t ready = 0;
  bool waits = false;
  seats_.forEach([&](const Seat& seat) {
    ready += isReady(seat) ? 1 : 0;
    waits = waits || seat.rebuyUntil != kNever;
  });
  const std::size_t needed = script_ ? script_->players : handsPlayed_ == 0 ? settings_.startWith : 2;
  return !waits && ready >= std::max<std::size_t>(needed, 2);
}

void Table::scheduleHand() {
  if (handScheduled_ || !mayBegin()) return;
  handScheduled_ = true;
  handTimer_.expires_after(settings_.handPause);
  handTimer_.async_wait([this](const std::error_code& cancelled) {
    if (cancelled) return;
    handScheduled_ = false;
    // Meanwhile players may have left.
    if (mayBegin()) audience_.outbox().run([this](Outbox::Results&) { beginHand(); });
  });
}

void Table::beginHand() {
  std::array<BlindsSeat, kMaxSeats> seats;
  std::size_t count = 0;
  seats_.forEach([&](Seat& seat) {
    seat.blinds.ready = isReady(seat);
    seat.blinds.posts = dealer_.hasChosen(seat.id(), UserAction::Post);
    seats[count++] = seat.blinds;
  });
  const std::span taken = std::span(seats).first(count);
  if (script_ && seats_.find(script_->button) != nullptr) blinds_.setButton(taken, script_->button);
  const std::optional<HandPlan> plan = blinds_.next(taken, draw());
  for (const BlindsSeat& seat : taken) seats_.find(seat.seat)->blinds = seat;
  if (!plan) return;
  std::visit([&](auto& generator) { deck_.shuffle(generator); }, random_);
  if (script_) deck_.stack(script_->cards);
  script_.reset();
  handBegan_ = Clock::now();
  dealer_.deal(host_.nextHandNumber(), *plan, deck_);
  afterChange();
}

void Table::armSeatTimer() {
  Clock::time_point next = kNever;
  const bool isOver = closed_ && !dealer_.isPlaying();  // seats are kept until the table opens again
  seats_.forEach([&](const Seat& seat) {
    if (isOver || dealer_.playerOf(seat.id()) != nullptr) return;
    next = std::min(next, seat.rebuyUntil);
    if (seat.awaySince != kNever) next = std::min(next, seat.awaySince + settings_.keepSeat);
  });
  if (next == seatTimerFor_) return;
  seatTimerFor_ = next;
  seatTimer_.cancel();
  if (next == kNever) return;
  seatTimer_.expires_at(next);
  seatTimer_.async_wait([this](const std::error_code& cancelled) {
    if (cancelled) return;
    seatTimerFor_ = kNever;
    audience_.outbox().run([this](Outbox::Results&) { afterChange(); });
  });
}

}  // namespace poker::holdem
