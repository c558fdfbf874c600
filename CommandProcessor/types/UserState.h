#pragma once

#include <cstdint>

namespace poker {

/// How a player, or a seat, stands at a table. Travels as one byte; values without a name are carried as they are.
enum class UserState : std::uint8_t {
  Empty = 0,         ///< nobody sits there (any more)
  Reserved = 1,      ///< kept for a player who is about to sit down
  Waiting = 2,       ///< sits, and plays from a later hand on
  WaitBigBlind = 3,  ///< sits, and plays from the big blind on
  Playing = 4,       ///< holds cards in this hand
  Folded = 5,
  AllIn = 6,
  SittingOut = 7,
  Disconnected = 8,  ///< the connection is lost; the seat is kept
};

}  // namespace poker
