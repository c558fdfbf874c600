#pragma once

#include <CommandProcessor/types/TypeWrapper.h>
#include <examples/holdem/game/Stakes.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace poker::holdem {

/// How a player stands with the blinds of a table.
struct BlindsSeat {
  SeatID seat;
  bool ready = false;  ///< has chips and does not sit out
  bool posts = false;  ///< pays what is owed rather than wait for the big blind
  bool owesBig = false;
  bool owesSmall = false;

  bool owes() const { return owesBig || owesSmall; }
};

/// Who takes part in a hand, and who pays what before the cards.
struct HandPlan {
  struct Seat {
    SeatID seat;
    bool postsBig = false;    ///< beside the big blind itself: a live bet of that size
    bool postsSmall = false;  ///< dead: straight into the pot
  };

  SeatID button;      ///< nobody may sit there any more
  SeatID smallBlind;  ///< none when nobody is there to pay it
  SeatID bigBlind;
  std::size_t size = 0;
  std::array<Seat, kMaxSeats> seats;  ///< so many, clockwise from the left of the button
};

/// The button and the blinds on their way round a table. The big blind moves on by one player every hand, so that nobody pays
/// it twice or not at all; the small blind stands where the big blind was, the button where the small blind was,
/// whether somebody is there or not. With two players, the small blind has the button.
class Blinds {
 public:
  /// Plans the next hand, and notes what those who miss their blinds owe. Seats whose debts are paid, or dropped because
  /// the game begins anew, owe nothing afterwards.
  /// @param seats  all taken ones, ascending; at most kMaxSeats
  /// @param first  decides who has the first button, when the game begins
  /// @return nothing when fewer than two players are ready
  std::optional<HandPlan> next(std::span<BlindsSeat> seats, std::uint64_t first);

  /// Moves the button to a taken seat; for scripted hands.
  void setButton(std::span<const BlindsSeat> seats, const SeatID& button);

  const SeatID& button() const { return button_; }
  /// The seat that had the big blind last; none before the first hand.
  const SeatID& bigBlind() const { return bigBlind_; }

 private:
  HandPlan plan(std::span<BlindsSeat> seats, std::span<const bool> takesPart);

  SeatID button_;
  SeatID smallBlind_;
  SeatID bigBlind_;
};

}  // namespace poker::holdem
