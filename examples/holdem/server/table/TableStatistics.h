#pragma once

#include <CommandProcessor/types/RealMoneyType.h>
#include <examples/holdem/server/table/Seats.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace poker::holdem {

/// What the last hands of a table were like. All of it is 0 before the first hand.
class TableStatistics {
 public:
  /// So many hands are looked at.
  static constexpr std::size_t kHands = 50;

  struct PlayedHand {
    RealMoneyType pot;     ///< of all pots, with the rake
    unsigned dealt = 0;    ///< players who got cards ...
    unsigned sawFlop = 0;  ///< ... and of these, who were in when there was a flop
    Clock::time_point began;
    Clock::time_point ended;
  };

  void add(const PlayedHand& hand);

  /// Rounded down to hundredths.
  RealMoneyType averagePot() const;
  /// Percent of those who were dealt in, rounded down.
  unsigned playersPerFlop() const;
  /// As many as an hour would have had, counted from the first card of the oldest of the hands to the end of the last one.
  std::uint32_t handsPerHour() const;

 private:
  std::size_t count() const;

  std::array<PlayedHand, kHands> hands_;
  std::uint64_t played_ = 0;
};

}  // namespace poker::holdem
