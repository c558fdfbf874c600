#include <inspect/hands/HandRank.h>

#include <algorithm>
#include <array>
#include <bit>

namespace poker {

namespace {

enum Category : std::uint32_t {
  kNothing,
  kHighCard,
  kPair,
  kTwoPair,
  kThreeOfAKind,
  kStraight,
  kFlush,
  kFullHouse,
  kFourOfAKind,
  kStraightFlush,
};

constexpr unsigned kPlaces = 5;
constexpr unsigned kAce = 14;
constexpr unsigned kCategoryShift = 4 * kPlaces;

/// The highest of five ranks in a row; 0 when there are none. Bit 2 is the two, bit 14 the ace.
unsigned straightTop(std::uint32_t ranks) {
  if ((ranks >> kAce & 1) != 0) ranks |= 2;  // an ace counts as a one, too
  for (unsigned top = kAce; top >= 5; --top) {
    if ((ranks >> (top - 4) & 0x1F) == 0x1F) return top;
  }
  return 0;
}

/// Puts ranks one after the other behind a category.
class Code {
 public:
  explicit Code(Category category) : code_(category << kCategoryShift) {}
  Code& add(unsigned rank) {
    code_ |= rank << (shift_ -= 4);
    return *this;
  }
  Code& addHighest(std::uint32_t ranks, unsigned count) {
    for (; count > 0 && ranks != 0; --count) {
      const auto rank = static_cast<unsigned>(std::bit_width(ranks)) - 1;
      add(rank);
      ranks &= ~(1U << rank);
    }
    return *this;
  }
  std::uint32_t value() const { return code_; }

 private:
  std::uint32_t code_;
  unsigned shift_ = kCategoryShift;
};

std::uint32_t codeOf(const std::array<std::uint32_t, 5>& suits) {
  // By how many suits have the rank.
  std::array<std::uint32_t, 5> withCount{};
  std::uint32_t all = 0;
  std::uint32_t flush = 0;
  for (const std::uint32_t suit : suits) {
    all |= suit;
    if (std::popcount(suit) >= 5) flush = suit;
  }
  for (unsigned rank = 2; rank <= kAce; ++rank) {
    const auto count = std::count_if(suits.begin(), suits.end(), [&](auto suit) { return (suit >> rank & 1) != 0; });
    withCount[static_cast<std::size_t>(count)] |= 1U << rank;
  }
  const auto highest = [](std::uint32_t ranks) {
    return ranks == 0 ? 0 : static_cast<unsigned>(std::bit_width(ranks)) - 1;
  };
  const auto without = [&](unsigned first, unsigned second = 0) { return all & ~(1U << first) & ~(1U << second); };

  if (const unsigned top = straightTop(flush); top != 0) return Code(kStraightFlush).add(top).value();
  if (const unsigned four = highest(withCount[4]); four != 0) {
    return Code(kFourOfAKind).add(four).addHighest(without(four), 1).value();
  }
  const unsigned three = highest(withCount[3]);
  const std::uint32_t pairs = (withCount[2] | withCount[3]) & ~(1U << three);
  if (three != 0 && pairs != 0) return Code(kFullHouse).add(three).add(highest(pairs)).value();
  if (flush != 0) return Code(kFlush).addHighest(flush, kPlaces).value();
  if (const unsigned top = straightTop(all); top != 0) return Code(kStraight).add(top).value();
  if (three != 0) return Code(kThreeOfAKind).add(three).addHighest(without(three), 2).value();
  const unsigned high = highest(pairs);
  const unsigned low = highest(pairs & ~(1U << high));
  if (low != 0) return Code(kTwoPair).add(high).add(low).addHighest(without(high, low), 1).value();
  if (high != 0) return Code(kPair).add(high).addHighest(without(high), 3).value();
  return Code(kHighCard).addHighest(all, kPlaces).value();
}

constexpr const char* kNames[] = {"",      "",     "two", "three", "four",  "five", "six", "seven",
                                  "eight", "nine", "ten", "jack",  "queen", "king", "ace", ""};

}  // namespace

HandRank HandRank::of(std::span<const Card> hole, std::span<const Card> board) {
  if (hole.size() + board.size() < 5 || hole.size() + board.size() > 7) return HandRank();
  std::array<std::uint32_t, 5> suits{};
  for (const std::span<const Card> cards : {hole, board}) {
    for (const Card& card : cards) {
      const auto suit = static_cast<std::uint32_t>(card.suit());
      auto rank = static_cast<std::uint32_t>(card.rank());
      if (suit < 1 || suit > 4 || rank < 1 || rank > kAce) return HandRank();
      if (rank == 1) rank = kAce;
      if ((suits[suit] >> rank & 1) != 0) return HandRank();
      suits[suit] |= 1U << rank;
    }
  }
  return HandRank(codeOf(suits));
}

std::string HandRank::words() const {
  const auto rank = [this](unsigned place) { return code_ >> (kCategoryShift - 4 - 4 * place) & 0xF; };
  const auto name = [&](unsigned place) { return std::string(kNames[rank(place)]); };
  const auto plural = [&](unsigned place) { return name(place) + (rank(place) == 6 ? "es" : "s"); };
  switch (code_ >> kCategoryShift) {
    case kStraightFlush:
      return rank(0) == kAce ? "a royal flush" : "a straight flush, " + name(0) + " high";
    case kFourOfAKind:
      return "four of a kind, " + plural(0);
    case kFullHouse:
      return "a full house, " + plural(0) + " full of " + plural(1);
    case kFlush:
      return "a flush, " + name(0) + " high";
    case kStraight:
      return "a straight, " + name(0) + " high";
    case kThreeOfAKind:
      return "three of a kind, " + plural(0);
    case kTwoPair:
      return "two pair, " + plural(0) + " and " + plural(1);
    case kPair:
      return "a pair of " + plural(0);
    case kHighCard:
      return name(0) + " high";
    default:
      return "no hand";
  }
}

}  // namespace poker
