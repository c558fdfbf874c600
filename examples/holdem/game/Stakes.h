#pragma once

#include <CommandProcessor/types/GameType.h>
#include <CommandProcessor/types/RealMoneyType.h>

#include <algorithm>
#include <cstdint>

namespace poker::holdem {

/// The most seats that a table may have.
inline constexpr std::size_t kMaxSeats = 10;

enum class Street : std::uint8_t { PreFlop, Flop, Turn, River };

/// What the house takes of each pot once there is a flop.
struct RakeRule {
  std::int64_t perTenThousand = 0;  ///< 500 are five per cent
  RealMoneyType cap;                ///< of a hand
};

/// What a table plays for.
struct Stakes {
  LimitType limit = LimitType::NoLimit;  ///< NoLimit or FixedLimit
  RealMoneyType smallBlind = RealMoneyType::fromUnits(1);
  RealMoneyType bigBlind = RealMoneyType::fromUnits(2);
  RakeRule rake;

  /// No limit: the least bet of every round. Fixed limit: the bet, twice the big blind from the turn on.
  RealMoneyType betOf(Street street) const {
    return limit == LimitType::FixedLimit && street >= Street::Turn ? bigBlind * 2 : bigBlind;
  }
};

}  // namespace poker::holdem
