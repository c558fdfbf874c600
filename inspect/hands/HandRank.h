#pragma once

#include <CommandProcessor/types/Card.h>

#include <compare>
#include <cstdint>
#include <span>
#include <string>

namespace poker {

/// What the best five of a hold'em player's cards are worth: the greater rank wins, equal ones split. Worked out here
/// anew, so that a server's own arithmetic can be checked against it.
class HandRank {
 public:
  /// No hand: below every real one.
  constexpr HandRank() = default;

  /// Of five to seven different cards with faces; no hand for any other cards. Visibility does not matter.
  static HandRank of(std::span<const Card> hole, std::span<const Card> board);

  bool isHand() const { return code_ != 0; }
  /// "a full house, kings full of twos"; "no hand".
  std::string words() const;

  friend constexpr auto operator<=>(HandRank, HandRank) = default;

 private:
  explicit constexpr HandRank(std::uint32_t code) : code_(code) {}

  std::uint32_t code_ = 0;  // the category from 1, then five ranks of four bits, those that decide first foremost
};

}  // namespace poker
