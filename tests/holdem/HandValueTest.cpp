#include <examples/holdem/game/CardText.h>
#include <examples/holdem/game/Deck.h>
#include <examples/holdem/game/HandValue.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <initializer_list>
#include <map>
#include <random>
#include <stdexcept>
#include <string_view>
#include <utility>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define CP_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define CP_SANITIZED 1
#endif
#endif

namespace poker::holdem {
namespace {

using Category = HandValue::Category;
using Five = std::array<Card, 5>;

#ifdef CP_SANITIZED
constexpr int kRandomHands = 10'000;
#else
constexpr int kRandomHands = 200'000;
#endif

HandValue valueOf(std::string_view text) { return HandValue::best(cardsFromText(text).value()); }

// The value of five cards as one tells it at a table: what comes most often first, then the higher; and its shape.
using Judgement = std::array<int, 6>;
Judgement judge(const Five& cards) {
  std::array<int, 15> times{};
  for (const Card& card : cards) ++times[static_cast<std::size_t>(card.rank())];
  std::array<int, 5> ranks;
  std::ranges::transform(cards, ranks.begin(), [](const Card& card) { return static_cast<int>(card.rank()); });
  const auto timesOf = [&times](int rank) { return times[static_cast<std::size_t>(rank)]; };
  std::ranges::sort(ranks, std::greater(), [&](int rank) { return timesOf(rank) * 100 + rank; });

  const bool flush = std::ranges::all_of(cards, [&](const Card& card) { return card.suit() == cards[0].suit(); });
  const bool different = timesOf(ranks[0]) == 1;
  if (ranks == std::array{14, 5, 4, 3, 2}) ranks = {5, 4, 3, 2, 1};
  const bool straight = different && ranks[0] - ranks[4] == 4;
  const int most = different ? 1 : timesOf(ranks[0]);
  const bool secondPair = !different && most < 4 && timesOf(ranks[3]) == 2;
  const Category shape = straight && flush         ? Category::StraightFlush
                         : most == 4               ? Category::FourOfAKind
                         : most == 3 && secondPair ? Category::FullHouse
                         : flush                   ? Category::Flush
                         : straight                ? Category::Straight
                         : most == 3               ? Category::ThreeOfAKind
                         : most == 2 && secondPair ? Category::TwoPair
                         : most == 2               ? Category::Pair
                                                   : Category::HighCard;
  return {static_cast<int>(shape), ranks[0], ranks[1], ranks[2], ranks[3], ranks[4]};
}

// Calls `visit` with every choice of five among the cards.
template <std::size_t N>
void forEveryFive(const std::array<Card, N>& cards, auto&& visit) {
  for (std::size_t a = 0; a < N; ++a)
    for (std::size_t b = a + 1; b < N; ++b)
      for (std::size_t c = b + 1; c < N; ++c)
        for (std::size_t d = c + 1; d < N; ++d)
          for (std::size_t e = d + 1; e < N; ++e) visit(Five{cards[d], cards[b], cards[e], cards[a], cards[c]});
}

template <std::size_t N>
std::array<Card, N> dealFrom(Deck& deck) {
  std::array<Card, N> cards;
  for (Card& card : cards) card = deck.deal();
  return cards;
}

TEST(HandValue, OrdersAllHandsOfFiveAsAPlainJudgeAndHasTheKnownNumberOfEach) {
  Deck deck;
  std::map<Category, int> counts;
  std::map<Judgement, HandValue> values;
  int otherwise = 0, royal = 0;
  forEveryFive(dealFrom<52>(deck), [&](const Five& hand) {
    const HandValue value = HandValue::best(hand);
    const Judgement judgement = judge(hand);
    ++counts[value.category()];
    if (values.try_emplace(judgement, value).first->second != value) ++otherwise;
    if (judgement[0] == static_cast<int>(Category::StraightFlush) && judgement[1] == 14) ++royal;
  });
  EXPECT_EQ(otherwise, 0) << "hands that are judged alike have different values";
  EXPECT_EQ(royal, 4);
  EXPECT_EQ(counts, (std::map<Category, int>{{Category::StraightFlush, 40},
                                             {Category::FourOfAKind, 624},
                                             {Category::FullHouse, 3744},
                                             {Category::Flush, 5108},
                                             {Category::Straight, 10200},
                                             {Category::ThreeOfAKind, 54912},
                                             {Category::TwoPair, 123552},
                                             {Category::Pair, 1098240},
                                             {Category::HighCard, 1302540}}));
  HandValue last;
  for (const auto& [judgement, value] : values) {
    ASSERT_LT(last, value) << last.toString() << ", " << value.toString();
    ASSERT_EQ(static_cast<int>(value.category()), judgement[0]);
    last = value;
  }
}

template <std::size_t N>
void expectBestOfFives(std::mt19937_64& random) {
  // Few ranks and suits in every other deck: hands of chance alone have hardly any four of a kind or straight flush.
  std::map<Category, int> seen;
  for (int round = 0; round < kRandomHands; ++round) {
    Deck deck;
    deck.shuffle(random);
    auto cards = dealFrom<N>(deck);
    if (round % 2 == 0) {
      for (std::size_t i = 0; i < N; ++i) {
        const auto isPassedOver = [](const Card& card) {
          return card.rank() < Card::Rank::Nine || card.suit() > Card::Suit::Diamond;
        };
        while (deck.remaining() > 0 && isPassedOver(cards[i])) cards[i] = deck.deal();
      }
    }
    HandValue best;
    forEveryFive(cards, [&](const Five& five) { best = std::max(best, HandValue::best(five)); });
    ASSERT_EQ(HandValue::best(cards), best) << best.toString();
    ASSERT_EQ(HandValue::best(std::span(cards).first(2), std::span(cards).subspan(2)), best);
    ++seen[best.category()];
  }
  EXPECT_EQ(seen.size(), 9u) << "some kind of hand was not tried";
}

TEST(HandValue, OfSixAndSevenCardsIsTheBestFiveOfThem) {
  std::mt19937_64 random(7);
  expectBestOfFives<6>(random);
  expectBestOfFives<7>(random);
}

TEST(HandValue, DecidesTheCasesThatPlayersArgueAbout) {
  struct Case {
    const char* better;
    const char* worse;
  };
  for (const auto& [better, worse] : std::initializer_list<Case>{
           {"Ac2d3h4s5c", "AcAdAhKsQc"},          // the lowest straight is one
           {"2c3c4c5c6c", "Ah2h3h4h5h"},          // ... and the lowest of one suit
           {"Ah2h3h4h5hKhQs", "AcAdAsAhKc"},      // five in a row of the suit below its high cards
           {"7h8h9hThJhAhKh", "6s7s8s9sTs"},      // a straight flush with higher cards of the suit beside it
           {"AhKh9h8h2h3h4s", "AhKh9h7h6h5h4s"},  // six of a suit: the best five, one by one
           {"KcKdKh2s2c", "QcQdQhAsAc"},          // the three decide
           {"KcKdKhAsAcAh2c", "AcAdAhQsQcQhKd"},  // two trips: the lower ones are the pair
           {"KcKdKh5s5c4d4h", "KcKdKh4s4c2d2h"},  // the higher of two pairs beside trips
           {"AcAdKhKsQcQd2c", "AcAdKhKsJcJd2c"},  // three pairs: a card of the third is the kicker
           {"5c5d5h5sKc", "5c5d5h5sQcQdQh"},      // four of a kind and one card, not the three
       }) {
    EXPECT_GT(valueOf(better), valueOf(worse)) << better << " against " << worse;
  }
  for (const auto& [one, other] : std::initializer_list<Case>{
           {"AhKdQsJcTh2c3d", "AhKdQsJcThAdAc"},  // the board plays
           {"AhAdKsQcJh3c2d", "AhAcKsQcJh9d4d"},  // the sixth and seventh card do not count
           {"AhAd7s7cKh2c3d", "AhAd7s7cKh6d6c"},  // the third pair is below the kicker
           {"9h8h7h6h5h4h2h", "9s8s7s6s5sAsQs"},
       }) {
    EXPECT_EQ(valueOf(one), valueOf(other)) << one << " and " << other;
  }
  const Card low[] = {{Card::Suit::Club, Card::Rank::LowAce},
                      {Card::Suit::Club, Card::Rank::King},
                      {Card::Suit::Club, Card::Rank::Queen},
                      {Card::Suit::Club, Card::Rank::Jack},
                      {Card::Suit::Club, Card::Rank::Ten, Card::Visibility::HiddenOwner}};
  EXPECT_EQ(HandValue::best(low), valueOf("AsKsQsJsTs"));
}

TEST(HandValue, IsSaidAsADealerSaysIt) {
  for (const auto& [cards, text] : std::initializer_list<std::pair<const char*, const char*>>{
           {"AsKsQsJsTs 9s 8s", "a royal flush"},
           {"5h6h7h8h9h", "a straight flush, nine high"},
           {"Ah2h3h4h5h Ks", "a straight flush, five high"},
           {"7c7d7h7s2d", "four of a kind, sevens"},
           {"KcKdKh2s2c", "a full house, kings full of twos"},
           {"Ad3d5d7d9d", "a flush, ace high"},
           {"Ac2d3h4s5c", "a straight, five high"},
           {"JcJdJh4s5c", "three of a kind, jacks"},
           {"AcAdKhKsQcQd2c", "two pair, aces and kings"},
           {"6c6dKhQs2c", "a pair of sixes"},
           {"Ac3d5h7s9c", "ace high"},
       }) {
    EXPECT_EQ(valueOf(cards).toString(), text) << cards;
  }
  EXPECT_EQ(HandValue().toString(), "no hand");
  EXPECT_LT(HandValue(), valueOf("7c5d4h3s2c"));
}

TEST(HandValue, RefusesCardsThatMakeNoHand) {
  for (const char* cards : {"", "AsKsQsJs", "2c3c4c5c6c7c8c9c", "AsKsQsJsAs", "2c3c4c5c6c7c2c"}) {
    EXPECT_THROW(valueOf(cards), std::invalid_argument) << cards;
  }
  Five hidden = {};
  EXPECT_THROW(HandValue::best(hidden), std::invalid_argument);
  hidden.fill(Card(Card::Suit{5}, Card::Rank::Two));
  EXPECT_THROW(HandValue::best(hidden), std::invalid_argument);
}

}  // namespace
}  // namespace poker::holdem
