#include <examples/holdem/game/HandValue.h>

#include <fmt/format.h>

#include <bit>
#include <stdexcept>

namespace poker::holdem {

namespace {

using Category = HandValue::Category;

// A set of ranks: bit 2 is the two, bit 14 the ace.
using Ranks = std::uint32_t;

constexpr unsigned kLowAce = static_cast<unsigned>(Card::Rank::LowAce);
constexpr unsigned kAce = static_cast<unsigned>(Card::Rank::Ace);
constexpr unsigned kSuits = 4;

constexpr unsigned highest(Ranks ranks) { return static_cast<unsigned>(std::bit_width(ranks)) - 1; }

constexpr Ranks highestOnly(Ranks ranks) { return std::bit_floor(ranks); }

// The highest card of five in a row, as a set; empty when there is no straight.
constexpr Ranks straight(Ranks ranks) {
  ranks |= (ranks >> kAce & 1) << kLowAce;
  return highestOnly(ranks & ranks << 1 & ranks << 2 & ranks << 3 & ranks << 4);
}

// The cards, sorted into one set of ranks a suit.
struct Suits {
  Ranks ranks[kSuits] = {};

  void add(std::span<const Card> cards) {
    for (const Card& card : cards) {
      const auto suit = static_cast<unsigned>(card.suit()) - 1;  // no suit becomes a large number
      const auto rank = static_cast<unsigned>(card.rank());
      if (suit >= kSuits || rank < kLowAce || rank > kAce) throw std::invalid_argument("a hand with a faceless card");
      const Ranks bit = Ranks{1} << (rank == kLowAce ? kAce : rank);
      if ((ranks[suit] & bit) != 0) throw std::invalid_argument("a hand with the same card twice");
      ranks[suit] |= bit;
    }
  }
};

constexpr std::uint32_t encode(unsigned shift, Category category, Ranks first, Ranks kickers, unsigned kickerCount) {
  std::uint32_t code = static_cast<std::uint32_t>(category) << shift;
  for (; first != 0; first ^= highestOnly(first)) code |= highest(first) << (shift -= 4);
  for (; kickerCount > 0; --kickerCount, kickers ^= highestOnly(kickers)) code |= highest(kickers) << (shift -= 4);
  return code;
}

constexpr const char* kNames[] = {nullptr, nullptr, "two", "three", "four",  "five", "six", "seven",
                                  "eight", "nine",  "ten", "jack",  "queen", "king", "ace"};

}  // namespace

HandValue HandValue::best(std::span<const Card> hole, std::span<const Card> board) {
  if (hole.size() > 7 || board.size() > 7 || hole.size() + board.size() < 5 || hole.size() + board.size() > 7) {
    throw std::invalid_argument("a hand of fewer than five or more than seven cards");
  }
  Suits suits;
  suits.add(hole);
  suits.add(board);

  const auto value = [](Category category, Ranks first, Ranks kickers = 0, unsigned kickerCount = 0) {
    return HandValue(encode(kCategoryShift, category, first, kickers, kickerCount));
  };
  // By how many suits have the rank, at least.
  Ranks one = 0, two = 0, three = 0, four = 0;
  Ranks flush = 0;
  for (const Ranks ranks : suits.ranks) {
    four |= three & ranks;
    three |= two & ranks;
    two |= one & ranks;
    one |= ranks;
    if (std::popcount(ranks) >= 5) flush = ranks;  // of seven cards, one suit at most
  }

  if (const Ranks top = straight(flush); top != 0) return value(Category::StraightFlush, top);
  if (four != 0) return value(Category::FourOfAKind, four, one & ~four, 1);
  const Ranks trips = highestOnly(three);
  if (trips != 0 && two != trips) return value(Category::FullHouse, trips, two & ~trips, 1);
  if (flush != 0) return value(Category::Flush, 0, flush, 5);
  if (const Ranks top = straight(one); top != 0) return value(Category::Straight, top);
  if (trips != 0) return value(Category::ThreeOfAKind, trips, one & ~trips, 2);
  const Ranks pair = highestOnly(two);
  const Ranks pairs = pair | highestOnly(two ^ pair);
  if (pairs != pair) return value(Category::TwoPair, pairs, one & ~pairs, 1);
  if (pair != 0) return value(Category::Pair, pair, one & ~pair, 3);
  return value(Category::HighCard, 0, one, 5);
}

std::string HandValue::toString() const {
  if (*this == HandValue()) return "no hand";
  const auto name = [this](unsigned place) { return kNames[rank(place)]; };
  const auto plural = [this](unsigned place) {
    return std::string(kNames[rank(place)]) + (rank(place) == static_cast<unsigned>(Card::Rank::Six) ? "es" : "s");
  };
  switch (category()) {
    case Category::StraightFlush:
      return rank(0) == kAce ? "a royal flush" : fmt::format("a straight flush, {} high", name(0));
    case Category::FourOfAKind:
      return fmt::format("four of a kind, {}", plural(0));
    case Category::FullHouse:
      return fmt::format("a full house, {} full of {}", plural(0), plural(1));
    case Category::Flush:
      return fmt::format("a flush, {} high", name(0));
    case Category::Straight:
      return fmt::format("a straight, {} high", name(0));
    case Category::ThreeOfAKind:
      return fmt::format("three of a kind, {}", plural(0));
    case Category::TwoPair:
      return fmt::format("two pair, {} and {}", plural(0), plural(1));
    case Category::Pair:
      return fmt::format("a pair of {}", plural(0));
    case Category::HighCard:
      break;
  }
  return fmt::format("{} high", name(0));
}

}  // namespace poker::holdem
