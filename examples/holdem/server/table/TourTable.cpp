#include <examples/holdem/server/table/TourTable.h>

#include <utility>

namespace poker::holdem {

TourTable::TourTable(asio::io_context& context, TableSettings settings, Outbox& outbox, TourTableHost& host)
    : Table(context, std::move(settings), outbox, host), host_(host) {}

SeatID TourTable::seat(const Account& account, const RealMoneyType& chips, bool sitsOut) {
  Seat& seat = takeSeat(seats_.firstFree(settings_.seats), account, chips, ConnectionID());
  seat.sitsOut = sitsOut;
  ++chipChanges_;
  announce(seat);
  afterChange();
  return seat.id();
}

RealMoneyType TourTable::unseat(AccountID account) {
  Seat& seat = *seats_.findAccount(account);
  const RealMoneyType chips = seat.stack;
  vacate(seat);
  ++chipChanges_;
  afterChange();
  return chips;
}

void TourTable::addChips(AccountID account, const RealMoneyType& chips) {
  Seat& seat = *seats_.findAccount(account);
  seat.stack += chips;
  ++chipChanges_;
  announce(seat);
  afterChange();
}

void TourTable::setBlinds(const RealMoneyType& smallBlind, const RealMoneyType& bigBlind, std::int16_t level,
                          std::int32_t units, TOUR_NAMES::SwitchType type) {
  settings_.stakes.smallBlind = smallBlind;
  settings_.stakes.bigBlind = bigBlind;
  const bool isFixed = settings_.stakes.limit == LimitType::FixedLimit;
  tell<SrvLevelSwitch>(isFixed ? bigBlind : smallBlind, isFixed ? bigBlind * 2 : bigBlind, level, units, type, true);
}

RealMoneyType TourTable::stackOf(AccountID account) {
  const Seat* seat = seats_.findAccount(account);
  return seat != nullptr ? seat->stack : kZeroMoney;
}

bool TourTable::sitsOut(AccountID account) {
  const Seat* seat = seats_.findAccount(account);
  return seat != nullptr && seat->sitsOut;
}

ConnectionID TourTable::connectionOf(AccountID account) {
  const Seat* seat = seats_.findAccount(account);
  return seat != nullptr ? audience_.connectionOf(seat->id()) : ConnectionID();
}

RealMoneyType TourTable::chips() {
  RealMoneyType sum;
  seats_.forEach([&](const Seat& seat) { sum += seat.stack; });
  return sum;
}

bool TourTable::isInHand(AccountID account) {
  const Seat* seat = seats_.findAccount(account);
  return seat != nullptr && dealer_.playerOf(seat->id()) != nullptr;
}

std::size_t TourTable::present() {
  std::size_t count = 0;
  seats_.forEach([&](const Seat& seat) { count += audience_.connectionOf(seat.id()).isValid() ? 1 : 0; });
  return count;
}

AccountID TourTable::nextBigBlind() {
  const Seat* first = nullptr;
  const Seat* next = nullptr;
  seats_.forEach([&](const Seat& seat) {
    if (seat.stack == kZeroMoney) return;
    if (first == nullptr) first = &seat;
    if (next == nullptr && blinds_.bigBlind() < seat.id()) next = &seat;
  });
  return (next != nullptr ? next : first)->account;
}

GameStartupInfo TourTable::startupInfo(std::uint32_t tournamentID, const SeatID& ownSeat) const {
  GameStartupInfo info;
  describe(settings_, info);
  info.tournamentID = tournamentID;
  info.ownSeat = ownSeat;
  return info;
}

// What viewers may not do here

void TourTable::sitDown(const ConnectionID& viewer, const Account&, const SeatID&, const RealMoneyType&) {
  audience_.outbox().add<SrvSitError>(viewer, SrvErrorCode::NotAllowed, kZeroMoney);
}

void TourTable::bringMore(const ConnectionID& viewer, const RealMoneyType&) {
  audience_.outbox().add<SrvSitError>(viewer, SrvErrorCode::NotAllowed, kZeroMoney);
}

/// The chips stay, and so does the player.
void TourTable::leaveSeat(const ConnectionID& viewer) {
  Seat* seat = seatOf(viewer);
  if (seat == nullptr) return;
  seat->sitsOut = true;
  dealer_.playerLeaves(seat->id());
  afterChange();
}

void TourTable::tellMoney(const ConnectionID& viewer, AccountID account) {
  const Seat* seat = seats_.findAccount(account);
  const RealMoneyType chips = seat != nullptr ? dealer_.stackOf(*seat) : kZeroMoney;
  audience_.outbox().add<SrvMoney>(viewer, kZeroMoney, chips, kZeroMoney, kZeroMoney);
}

// From hand to hand

void TourTable::afterHand() {
  ++chipChanges_;
  host_.onHandOver(*this);
}

void TourTable::tidySeats() {
  seats_.forEach([&](Seat& seat) {
    if (dealer_.playerOf(seat.id()) == nullptr && dealer_.hasChosen(seat.id(), UserAction::SittingOut))
      seat.sitsOut = true;
  });
}

}  // namespace poker::holdem
