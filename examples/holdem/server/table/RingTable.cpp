#include <examples/holdem/server/table/RingTable.h>

#include <algorithm>
#include <utility>

namespace poker::holdem {

namespace {

constexpr Clock::time_point kNever = Clock::time_point::max();

/// The least that there is.
constexpr RealMoneyType kOneHundredth = RealMoneyType::fromHundredths(1);

}  // namespace

RingTable::RingTable(asio::io_context& context, TableSettings settings, Bank& bank, Outbox& outbox, RingTableHost& host)
    : Table(context, std::move(settings), outbox, host), bank_(bank), host_(host), seatTimer_(context) {
  for (const SeatedPlayer& player : bank_.seated(settings_.gameID)) {
    Seat& seat = takeSeat(player.seat, {player.account, player.name, {}}, player.stack, ConnectionID());
    seat.blinds.owesBig = true;
    seat.announced = UserState::Disconnected;
    seat.awaySince = Clock::now();
    if (seat.stack == kZeroMoney) seat.rebuyUntil = Clock::now() + settings_.rebuyTime;
  }
  armSeatTimer();
}

void RingTable::greet(const ConnectionID& viewer, const Seat* seat) {
  // Its last OutOfMoney may have been lost with the old connection.
  if (seat == nullptr || seat->rebuyUntil == kNever) return;
  audience_.outbox().add<OutOfMoney>(viewer, bank_.balance(seat->account), SrvErrorCode::NotEnoughMoney);
}

void RingTable::close() {
  host_.onSeatsChanged(*this);
  Table::close();
}

// Held seats

void RingTable::hold(const SeatID& seat, const Account& account) {
  seats_.hold(seat, {account.id, account.name});
  audience_.tellAll<SrvUserStateOnTable>(seat, account.name.c_str(), kZeroMoney, UserState::Reserved);
  changed();
}

void RingTable::release(const SeatID& seat) {
  const HeldSeat* held = seats_.findHeld(seat);
  if (held == nullptr) return;
  audience_.tellAll<SrvUserStateOnTable>(seat, held->name.c_str(), kZeroMoney, UserState::Empty);
  seats_.release(seat);
  host_.onSeatsChanged(*this);
  changed();
}

// Seats and chips

/// What the account left the table with not long ago; otherwise zero.
RealMoneyType RingTable::lastStack(AccountID account) const {
  const auto last = lastSittings_.find(account);
  return last == lastSittings_.end() || last->second.until <= Clock::now() ? kZeroMoney : last->second.stack;
}

std::optional<SrvErrorCode> RingTable::whyNotSit(const Account& account, const SeatID& seat,
                                                 const RealMoneyType& money) {
  if (closed_ || seats_.findAccount(account.id) != nullptr) return SrvErrorCode::NotAllowed;
  if (seat.value() >= settings_.seats || seats_.find(seat) != nullptr) return SrvErrorCode::SeatTaken;
  if (const HeldSeat* held = seats_.findHeld(seat); held != nullptr && held->account != account.id) {
    return SrvErrorCode::SeatTaken;
  }
  const RealMoneyType last = lastStack(account.id);
  if (money < settings_.minBuyIn) return SrvErrorCode::NotEnoughMoney;
  if (money < last) return SrvErrorCode::LessThanLastSitting;
  if (money > std::max(settings_.maxBuyIn, last)) return SrvErrorCode::RebuyTooLarge;
  if (!bank_.sitDown(account.id, settings_.gameID, seat, money)) return SrvErrorCode::NotEnoughMoney;
  return std::nullopt;
}

void RingTable::sitDown(const ConnectionID& viewer, const Account& account, const SeatID& seat,
                        const RealMoneyType& money) {
  if (const auto error = whyNotSit(account, seat, money)) {
    audience_.outbox().add<SrvSitError>(viewer, *error, kZeroMoney);
    return;
  }
  Seat& taken = takeSeat(seat, account, money, viewer);
  taken.blinds.owesBig = true;
  host_.onSeatsChanged(*this);
  audience_.outbox().add<SrvSitOk>(viewer, seat);
  announce(taken);
  afterChange();
}

void RingTable::leaveSeat(const ConnectionID& viewer) {
  Seat* seat = seatOf(viewer);
  if (seat == nullptr) return;
  seat->leaves = true;
  dealer_.playerLeaves(seat->id());
  afterChange();
}

void RingTable::standUp(Seat& seat) {
  const RealMoneyType stack = bank_.standUp(seat.account);
  std::erase_if(lastSittings_, [](const auto& entry) { return entry.second.until <= Clock::now(); });
  lastSittings_[seat.account] = {stack, Clock::now() + settings_.lastSitting};
  vacate(seat);
  host_.onSeatsChanged(*this);
}

void RingTable::tellMoney(const ConnectionID& viewer, AccountID account) {
  tellMoneyOf(viewer, account, seats_.findAccount(account));
}

void RingTable::tellMoneyOf(const ConnectionID& viewer, AccountID account, const Seat* seat) {
  const RealMoneyType last = lastStack(account);
  const RealMoneyType atTable = seat != nullptr ? dealer_.stackOf(*seat) : kZeroMoney;
  const bool hasChips = atTable > kZeroMoney;
  const RealMoneyType least =
      hasChips ? kOneHundredth : std::max(settings_.minBuyIn, seat == nullptr ? last : kZeroMoney);
  const RealMoneyType most = seat != nullptr ? settings_.maxBuyIn - atTable : std::max(settings_.maxBuyIn, last);
  audience_.outbox().add<SrvMoney>(viewer, bank_.balance(account), atTable, least, std::max(most, kZeroMoney));
}

std::optional<SrvErrorCode> RingTable::whyNotMore(const Seat& seat, const RealMoneyType& amount) {
  const RealMoneyType stack = dealer_.stackOf(seat);
  const bool isBroke = stack == kZeroMoney && dealer_.playerOf(seat.id()) == nullptr;
  if (amount < (isBroke ? settings_.minBuyIn : kOneHundredth)) return SrvErrorCode::NotEnoughMoney;
  if (stack + seat.orderedChips + amount > settings_.maxBuyIn) return SrvErrorCode::RebuyTooLarge;
  if (bank_.balance(seat.account) < seat.orderedChips + amount) return SrvErrorCode::NotEnoughMoney;
  return std::nullopt;
}

void RingTable::bringMore(const ConnectionID& viewer, const RealMoneyType& amount) {
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
void RingTable::addChips(Seat& seat, const RealMoneyType& amount) {
  const ConnectionID& viewer = audience_.connectionOf(seat.id());
  if (!bank_.addChips(seat.account, amount)) {
    audience_.outbox().add<SrvSitError>(viewer, SrvErrorCode::NotEnoughMoney, kZeroMoney);
    return;
  }
  seat.stack += amount;
  seat.rebuyUntil = kNever;
  if (viewer.isValid()) tellMoneyOf(viewer, seat.account, &seat);
  announce(seat);
}

// Between hands

void RingTable::afterHand() {
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
  host_.onHandOver(settings_.gameID, handsPlayed());
}

/// Seats whose players are in no hand: those who sit out from now on, and those who lose their seat.
void RingTable::tidySeats() {
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

bool RingTable::isReady(const Seat& seat) const {
  return audience_.connectionOf(seat.id()).isValid() && !seat.sitsOut && !seat.leaves && seat.stack > kZeroMoney;
}

/// The table waits for a player whose chips are gone.
bool RingTable::mayBegin() {
  bool waits = false;
  seats_.forEach([&](const Seat& seat) { waits = waits || seat.rebuyUntil != kNever; });
  return !waits;
}

void RingTable::afterChanges() {
  armSeatTimer();
  if (!closed_ || closeTold_ || dealer_.isPlaying()) return;
  closeTold_ = true;
  host_.onTableClosed();
}

void RingTable::armSeatTimer() {
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
    audience_.outbox().run([this] { afterChange(); });
  });
}

}  // namespace poker::holdem
