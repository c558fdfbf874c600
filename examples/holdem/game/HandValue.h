#pragma once

#include <CommandProcessor/types/Card.h>

#include <compare>
#include <cstdint>
#include <span>
#include <string>

namespace poker::holdem {

/// What the best five of a player's cards are worth. Ordered: the greater value wins, equal values split the pot.
/// Any thread may read it.
class HandValue {
 public:
  enum class Category : std::uint8_t {
    HighCard,
    Pair,
    TwoPair,
    ThreeOfAKind,
    Straight,
    Flush,
    FullHouse,
    FourOfAKind,
    StraightFlush,
  };

  /// No hand: a high card, below every real one.
  constexpr HandValue() = default;

  /// Nothing is allocated.
  /// @param cards  five to seven different ones with a face, in any order; their visibility does not matter
  /// @throws std::invalid_argument  for other cards
  static HandValue best(std::span<const Card> cards) { return best(cards, {}); }
  /// The same of both together.
  static HandValue best(std::span<const Card> hole, std::span<const Card> board);

  Category category() const { return static_cast<Category>(code_ >> kCategoryShift); }
  /// As a dealer says it: "a full house, kings full of twos". "no hand" for a default value.
  std::string toString() const;

  friend constexpr auto operator<=>(HandValue, HandValue) = default;

 private:
  static constexpr unsigned kCategoryShift = 20;

  explicit constexpr HandValue(std::uint32_t code) : code_(code) {}
  /// The rank of this place (0 is the most significant), 2 to 14.
  unsigned rank(unsigned place) const { return code_ >> (kCategoryShift - 4 - 4 * place) & 0xF; }

  // The category, then up to five ranks of four bits, those that decide first foremost.
  std::uint32_t code_ = 0;
};

}  // namespace poker::holdem
