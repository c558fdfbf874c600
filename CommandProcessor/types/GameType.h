#pragma once

#include <cstdint>

namespace poker {

/// The game of a table. Travels as 16 bits; values without a name are carried as they are.
enum class GameType : std::uint16_t {
  None = 0,
  TexasHoldem = 1,
  Omaha = 2,
  OmahaHiLo = 3,
  SevenCardStud = 4,
  SevenCardStudHiLo = 5,
  FiveCardDraw = 6,
};

/// How much may be bet. Travels as one byte; values without a name are carried as they are.
enum class LimitType : std::uint8_t {
  None = 0,
  FixedLimit = 1,
  PotLimit = 2,
  NoLimit = 3,
};

}  // namespace poker
