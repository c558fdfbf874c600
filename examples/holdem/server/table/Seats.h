#pragma once

#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/types/UserState.h>
#include <examples/holdem/game/Blinds.h>
#include <examples/holdem/server/bank/Bank.h>

#include <array>
#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace poker::holdem {

using Clock = std::chrono::steady_clock;

/// A taken seat.
struct Seat {
  AccountID account{};
  std::string name;
  RealMoneyType stack;  ///< as the bank has it: in a hand, what it began with
  BlindsSeat blinds;    ///< its `ready` is worked out before each hand
  bool sitsOut = false;
  bool leaves = false;         ///< as soon as it is in no hand
  RealMoneyType orderedChips;  ///< to be brought when the hand is over

  UserState announced = UserState::Waiting;                 ///< the state that viewers have been told
  Clock::time_point awaySince = Clock::time_point::max();   ///< not connected or sitting out, since
  Clock::time_point rebuyUntil = Clock::time_point::max();  ///< the stack is gone, and the table waits for more
  unsigned turnsUnderWay = 0;  ///< turns that this connection was asked for and has not acknowledged

  const SeatID& id() const { return blinds.seat; }
};

/// A free seat that is kept for a player who is about to sit down.
struct HeldSeat {
  AccountID account{};
  std::string name;
};

/// All seats of a table by their number: taken, held, or free.
class Seats {
 public:
  /// Null when nobody sits there.
  Seat* find(const SeatID& seat) {
    return seat.value() < kMaxSeats && seats_[seat.value()] ? &*seats_[seat.value()] : nullptr;
  }
  Seat* findAccount(AccountID account) {
    for (std::optional<Seat>& seat : seats_) {
      if (seat && seat->account == account) return &*seat;
    }
    return nullptr;
  }
  /// The seat must exist, and be free or held for who takes it.
  Seat& take(const SeatID& id) {
    held_.erase(id);
    Seat& seat = seats_[id.value()].emplace();
    seat.blinds.seat = id;
    return seat;
  }
  void free(const SeatID& id) { seats_[id.value()].reset(); }
  /// The first of `count` seats that is neither taken nor held; none when there is none.
  SeatID firstFree(std::size_t count) const {
    for (SeatID::value_type seat = 0; seat < count; ++seat) {
      if (!seats_[seat] && !held_.contains(seat)) return seat;
    }
    return {};
  }

  void hold(const SeatID& id, HeldSeat seat) { held_[id] = std::move(seat); }
  /// Null when the seat is not held.
  const HeldSeat* findHeld(const SeatID& id) const {
    const auto held = held_.find(id);
    return held == held_.end() ? nullptr : &held->second;
  }
  void release(const SeatID& id) { held_.erase(id); }

  std::size_t taken() const {
    std::size_t count = 0;
    for (const std::optional<Seat>& seat : seats_) count += seat ? 1 : 0;
    return count;
  }
  /// In ascending order. `f` may free the seat that it is given.
  template <class F>
  void forEach(F&& f) {
    for (std::optional<Seat>& seat : seats_) {
      if (seat) f(*seat);
    }
  }

 private:
  std::array<std::optional<Seat>, kMaxSeats> seats_;
  std::map<SeatID, HeldSeat> held_;  // none of them taken
};

}  // namespace poker::holdem
