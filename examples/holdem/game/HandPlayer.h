#pragma once

#include <CommandProcessor/types/CardVector.h>
#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/types/TypeWrapper.h>
#include <CommandProcessor/types/UserAction.h>
#include <examples/holdem/game/Stakes.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace poker::holdem {

/// A player in one hand.
struct HandPlayer {
  SeatID seat;
  RealMoneyType stack;        ///< what is not bet
  RealMoneyType bet;          ///< in this betting round
  RealMoneyType paid;         ///< in the whole hand, this round's bet included ...
  RealMoneyType dead;         ///< ... and what went into the main pot beside it: a missed small blind
  RealMoneyType won;          ///< at the end of the hand
  std::array<Card, 2> cards;  ///< their visibility is not kept here
  bool folded = false;
  bool turnedUp = false;                         ///< the cards were shown to all
  UserAction lastAction = UserAction::NoAction;  ///< in this betting round, a blind too

  // For the betting: how things stood when the player last acted in this round.
  bool acted = false;
  RealMoneyType levelWhenActed;
  unsigned betsWhenActed = 0;

  /// May still be asked to act in this hand.
  bool canAct() const { return !folded && stack > kZeroMoney; }
  /// Moves chips from the stack to the bet.
  void put(const RealMoneyType& amount) {
    stack -= amount;
    bet += amount;
    paid += amount;
  }
};

/// The players of one hand, clockwise; the first one sits left of the button. At most kMaxSeats.
class HandPlayers {
 public:
  using iterator = HandPlayer*;
  using const_iterator = const HandPlayer*;

  HandPlayer* begin() { return players_.data(); }
  HandPlayer* end() { return players_.data() + size_; }
  const HandPlayer* begin() const { return players_.data(); }
  const HandPlayer* end() const { return players_.data() + size_; }
  std::size_t size() const { return size_; }
  HandPlayer& operator[](std::size_t i) { return players_[i]; }
  const HandPlayer& operator[](std::size_t i) const { return players_[i]; }

  void clear() { size_ = 0; }
  /// There must be room.
  HandPlayer& add(const SeatID& seat, const RealMoneyType& stack) {
    HandPlayer& player = players_[size_++];
    player = HandPlayer();
    player.seat = seat;
    player.stack = stack;
    return player;
  }
  /// Null when the seat is not in the hand.
  const HandPlayer* find(const SeatID& seat) const {
    for (const HandPlayer& player : *this) {
      if (player.seat == seat) return &player;
    }
    return nullptr;
  }
  HandPlayer* find(const SeatID& seat) { return const_cast<HandPlayer*>(std::as_const(*this).find(seat)); }
  /// How many have not folded.
  std::size_t remaining() const {
    return static_cast<std::size_t>(std::count_if(begin(), end(), [](const HandPlayer& p) { return !p.folded; }));
  }

 private:
  std::array<HandPlayer, kMaxSeats> players_;
  std::size_t size_ = 0;
};

}  // namespace poker::holdem
