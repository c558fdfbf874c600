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

}  // namespace

Table::Table(asio::io_context& context, TableSettings settings, Outbox& outbox, TableHost& host)
    : settings_(std::move(settings)),
      audience_(outbox),
      dealer_(context, settings_, seats_, audience_, *this),
      host_(host),
      handTimer_(context) {
  if (settings_.seed) random_.emplace<std::mt19937_64>(*settings_.seed + settings_.gameID);
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
  if (seat != nullptr) dealer_.playerReturns(seat->id());
  greet(viewer, seat);
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

// Seats

Seat& Table::takeSeat(const SeatID& id, const Account& account, const RealMoneyType& stack,
                      const ConnectionID& connection) {
  Seat& seat = seats_.take(id);
  seat.account = account.id;
  seat.name = account.name;
  seat.stack = stack;
  if (!connection.isValid()) return seat;
  audience_.bind(id, connection);
  host_.onSeated(connection, true);
  return seat;
}

void Table::vacate(Seat& seat) {
  const SeatID id = seat.id();
  const ConnectionID connection = audience_.connectionOf(id);
  audience_.tellAll<SrvUserStateOnTable>(id, seat.name.c_str(), kZeroMoney, UserState::Empty);
  dealer_.forget(id);
  seats_.free(id);
  audience_.tellAll<SrvPlayerLeave>(settings_.gameID, static_cast<unsigned>(seats_.taken()));
  if (!connection.isValid()) return;
  audience_.bind(id, ConnectionID());
  host_.onSeated(connection, false);
}

void Table::announce(Seat& seat) {
  seat.announced = dealer_.stateOf(seat);
  audience_.tellAll<SrvUserStateOnTable>(seat.id(), seat.name.c_str(), dealer_.stackOf(seat), seat.announced);
}

void Table::announceChanges() {
  seats_.forEach([&](Seat& seat) {
    if (dealer_.stateOf(seat) != seat.announced) announce(seat);
  });
}

// What players do

void Table::comeBack(const ConnectionID& viewer) {
  Seat* seat = seatOf(viewer);
  if (seat == nullptr) return;
  seat->sitsOut = false;
  seat->awaySince = kNever;
  dealer_.choose(seat->id(), actionBit(UserAction::SittingOut), kZeroMoney, false);
  audience_.outbox().add<SrvBackOnSeatOk>(viewer, seat->id());
  afterChange();
}

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

// From hand to hand

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
  bookHand(booking_, hand);
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

void Table::afterChange() {
  if (std::exchange(handJustOver_, false)) afterHand();
  tidySeats();
  announceChanges();
  scheduleHand();
  afterChanges();
  changed();
}

bool Table::isDue() {
  if (closed_ || dealer_.isPlaying() || !mayBegin()) return false;
  std::size_t ready = 0;
  seats_.forEach([&](const Seat& seat) { ready += isReady(seat) ? 1 : 0; });
  return ready >= std::max<std::size_t>(script_ ? script_->players : playersNeeded(), 2);
}

void Table::scheduleHand() {
  if (handScheduled_ || !isDue()) return;
  handScheduled_ = true;
  handTimer_.expires_after(settings_.handPause);
  handTimer_.async_wait([this](const std::error_code& cancelled) {
    if (cancelled) return;
    handScheduled_ = false;
    audience_.outbox().run([this] {
      if (isDue()) beginHand();  // meanwhile players may have left
    });
  });
}

void Table::beginHand() {
  prepareHand();
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

}  // namespace poker::holdem
