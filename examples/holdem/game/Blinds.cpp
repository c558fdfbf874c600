#include <examples/holdem/game/Blinds.h>

#include <algorithm>
#include <utility>

namespace poker::holdem {

namespace {

/// Whether a seat lies strictly between two others, clockwise. From a seat to itself is a whole round.
bool isBetween(const SeatID& from, const SeatID& seat, const SeatID& to) {
  const auto steps = [&](const SeatID& end) {
    const int distance = end.value() - from.value();
    return distance > 0 ? distance : distance + 256;
  };
  return seat != from && steps(seat) < steps(to);
}

/// The index of the first seat after `seat`, clockwise, that a test accepts; one must be there.
template <class Test>
std::size_t nextAfter(std::span<const BlindsSeat> seats, const SeatID& seat, Test&& test) {
  std::size_t first = 0;
  while (first < seats.size() && seats[first].seat <= seat) ++first;
  for (std::size_t step = 0;; ++step) {
    const std::size_t i = (first + step) % seats.size();
    if (test(seats[i])) return i;
  }
}

bool isReady(const BlindsSeat& seat) { return seat.ready; }

}  // namespace

std::optional<HandPlan> Blinds::next(std::span<BlindsSeat> seats, std::uint64_t first) {
  const auto ready = static_cast<std::size_t>(std::count_if(seats.begin(), seats.end(), isReady));
  if (ready < 2) return std::nullopt;

  std::array<bool, kMaxSeats> takesPart{};
  const auto everybody = [&] {
    for (std::size_t i = 0; i < seats.size(); ++i) {
      takesPart[i] = seats[i].ready;
      if (seats[i].ready) seats[i].owesBig = seats[i].owesSmall = false;
    }
  };
  if (!bigBlind_.isValid()) {
    everybody();
    SeatID seat;  // the button of the first hand
    std::uint64_t place = first % ready;
    for (const BlindsSeat& candidate : seats) {
      if (candidate.ready && place-- == 0) seat = candidate.seat;
    }
    button_ = seat;
    smallBlind_ = ready == 2 ? seat : seats[nextAfter(seats, seat, isReady)].seat;
    bigBlind_ = seats[nextAfter(seats, smallBlind_, isReady)].seat;
    return plan(seats, std::span(takesPart).first(seats.size()));
  }

  const std::size_t big = nextAfter(seats, bigBlind_, isReady);
  for (BlindsSeat& seat : seats) {
    if (!seat.ready && isBetween(bigBlind_, seat.seat, seats[big].seat)) seat.owesBig = true;
    if (!seat.ready && seat.seat == bigBlind_) seat.owesSmall = true;
  }
  button_ = std::exchange(smallBlind_, std::exchange(bigBlind_, seats[big].seat));
  for (std::size_t i = 0; i < seats.size(); ++i) {
    BlindsSeat& seat = seats[i];
    // Nobody joins between the button and the big blind. (Of two players, the one with the button may have it now.)
    const SeatID& from = button_ == bigBlind_ ? smallBlind_ : button_;
    const bool mayJoin = !isBetween(from, seat.seat, bigBlind_) && seat.seat != smallBlind_;
    takesPart[i] = seat.ready && (i == big || !seat.owes() || (seat.posts && mayJoin));
  }
  if (std::count(takesPart.begin(), takesPart.end(), true) < 2) everybody();
  seats[big].owesBig = seats[big].owesSmall = false;
  const auto players = std::count(takesPart.begin(), takesPart.end(), true);
  SeatID last;  // who takes part, and sits nearest before the big blind ...
  for (std::size_t step = 1; step < seats.size(); ++step) {
    const std::size_t i = (big + step) % seats.size();
    // ... and before the small blind too, when there are three
    if (takesPart[i] && (players == 2 || seats[i].seat != smallBlind_)) last = seats[i].seat;
  }
  if (players == 2) {
    // The other player has the small blind and the button.
    button_ = smallBlind_ = last;
    for (BlindsSeat& seat : seats) {
      if (seat.seat == last) seat.owesBig = seat.owesSmall = false;
    }
  } else if (button_ == bigBlind_) {
    button_ = last;  // a third player has come to a table of two
  }
  return plan(seats, std::span(takesPart).first(seats.size()));
}

HandPlan Blinds::plan(std::span<BlindsSeat> seats, std::span<const bool> takesPart) {
  HandPlan plan;
  plan.button = button_;
  plan.bigBlind = bigBlind_;
  std::size_t first = 0;
  while (first < seats.size() && seats[first].seat <= button_) ++first;
  for (std::size_t step = 0; step < seats.size(); ++step) {
    const std::size_t i = (first + step) % seats.size();
    if (!takesPart[i]) continue;
    BlindsSeat& seat = seats[i];
    if (seat.seat == smallBlind_) plan.smallBlind = seat.seat;
    plan.seats[plan.size++] = {seat.seat, std::exchange(seat.owesBig, false), std::exchange(seat.owesSmall, false)};
  }
  return plan;
}

void Blinds::setButton(std::span<const BlindsSeat> seats, const SeatID& button) {
  // The next hand puts each a place further.
  const auto any = [](const BlindsSeat&) { return true; };
  smallBlind_ = button;
  bigBlind_ = seats.size() == 2 ? button : seats[nextAfter(seats, button, any)].seat;
}

}  // namespace poker::holdem
