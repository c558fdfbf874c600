#include "Sanitized.h"

#include <examples/holdem/game/CardText.h>
#include <examples/holdem/game/Deck.h>
#include <examples/holdem/game/HandValue.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <initializer_list>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace poker::holdem {
namespace {

using Category = HandValue::Category;
using Five = std::array<Card, 5>;
using Judgement = std::array<int, 6>;

std::string dealText(Deck& deck, std::size_t count) {
  std::string text;
  for (; count > 0; --count) text += toText(deck.deal());
  return text;
}

TEST(Deck, HasEveryCardOnceHoweverItIsShuffled) {
  SystemRandom random;
  Deck deck;
  for (int round = 0; round < 3; ++round) {
    std::set<std::string> cards;
    for (; deck.remaining() > 0;) cards.insert(toText(deck.deal()));
    EXPECT_EQ(cards.size(), 52u);
    EXPECT_FALSE(cards.contains("??"));
    EXPECT_THROW(deck.deal(), std::logic_error);
    deck.shuffle(random);
    EXPECT_EQ(deck.remaining(), 52u);
  }
}

TEST(Deck, TakesTheSameOrderFromTheSameBitsEverywhere) {
  std::mt19937_64 random(1);
  Deck deck;
  deck.shuffle(random);
  EXPECT_EQ(dealText(deck, 5), "7♣3♣7♠6♠T♦");
  std::mt19937_64 again(1);
  deck.shuffle(again);
  EXPECT_EQ(dealText(deck, 5), "7♣3♣7♠6♠T♦") << "what was before a shuffle counts for it";
}

TEST(Deck, PutsEveryCardAnywhereEquallyOften) {
  constexpr int kShuffles = 10'000;
  std::array<std::array<int, Deck::kCards>, Deck::kCards> times{};
  Deck sorted;
  std::array<std::size_t, 256> indexOf{};
  for (std::size_t i = 0; i < Deck::kCards; ++i) indexOf[sorted.deal().toByte()] = i;
  std::mt19937_64 random(2);
  Deck deck;
  for (int round = 0; round < kShuffles; ++round) {
    deck.shuffle(random);
    for (auto& place : times) ++place[indexOf[deck.deal().toByte()]];
  }
  const double expected = double{kShuffles} / Deck::kCards;
  double chiSquare = 0;
  for (const auto& place : times) {
    for (const int count : place) chiSquare += (count - expected) * (count - expected) / expected;
  }
  // 51 * 51 degrees of freedom; six standard deviations on each side.
  EXPECT_GT(chiSquare, 2601 - 6 * 72);
  EXPECT_LT(chiSquare, 2601 + 6 * 72);
}

TEST(Deck, StacksNamedCardsOnTopOfTheOthersInTheirOrder) {
  std::mt19937_64 random(3);
  Deck deck;
  deck.shuffle(random);
  Deck plain = deck;
  EXPECT_EQ(toText(deck.deal()), toText(plain.deal()));
  const std::string next = toText(Deck(plain).deal());
  const auto named = cardsFromText("As Kd 2c 7h").value();
  deck.stack(named);
  EXPECT_EQ(dealText(deck, 4), "A♠K♦2♣7♥");
  while (deck.remaining() > 0) {
    const Card card = deck.deal();
    Card other = plain.deal();
    while (testing::Value(other, testing::AnyOfArray(named))) other = plain.deal();
    ASSERT_EQ(card, other);
  }

  Deck kept;
  const Card top = kept.deal();
  for (const auto& bad : {std::vector{named[0], named[0]}, {named[0], Card()}, {named[0], top}}) {
    EXPECT_THROW(kept.stack(bad), std::invalid_argument);
  }
  EXPECT_EQ(dealText(kept, 2), "3♣4♣") << "a refused stack changed the deck";
}

// A generator that gives what it is told.
struct Script {
  using result_type = std::uint64_t;
  static constexpr result_type min() { return 0; }
  static constexpr result_type max() { return UINT64_MAX; }
  result_type operator()() { return values.at(next++); }
  std::vector<result_type> values;
  std::size_t next = 0;
};

TEST(DrawBelow, PassesOverTheBitsThatWouldFavourSomeResults) {
  constexpr std::uint64_t kHuge = (std::uint64_t{1} << 63) + 1;  // 2^64 has kHuge - 2 beyond its one multiple
  Script script{{0, kHuge - 3, kHuge - 2, 3, 5}};
  EXPECT_EQ(drawBelow(script, kHuge), kHuge - 2);
  EXPECT_EQ(drawBelow(script, 6), 5u) << "2^64 has four beyond a multiple of six, so 3 is passed over";
  EXPECT_EQ(script.next, 5u);
}

TEST(CardText, ReadsWhatPeopleWrite) {
  for (const auto& [text, read] : std::initializer_list<std::pair<const char*, const char*>>{
           {"As", "A♠"}, {"td", "T♦"}, {"10h", "T♥"}, {"2C", "2♣"}, {"Q♥", "Q♥"}, {"10♣", "T♣"}, {"9♦", "9♦"}}) {
    const std::optional<Card> card = cardFromText(text);
    ASSERT_TRUE(card.has_value()) << text;
    EXPECT_EQ(toText(*card), read);
    EXPECT_EQ(card->visibility(), Card::Visibility::Shown);
  }
  for (const char* bad : {"", "A", "1s", "0h", "10", "sA", "Asx", "As ", "AsKd", "A\xE2\x99", "??", "11s"}) {
    EXPECT_FALSE(cardFromText(bad).has_value()) << bad;
  }
  EXPECT_EQ(toText(Card()), "??");
  EXPECT_EQ(toText(Card(Card::Suit::Spade, Card::Rank::Ace, Card::Visibility::Hidden)), "??");
  EXPECT_EQ(toText(Card(Card::Suit::Spade, Card::Rank::LowAce, Card::Visibility::HiddenOwner)), "A♠");
  EXPECT_EQ(toText(Card(Card::Suit{5}, Card::Rank{15})), "??");

  const auto cards = cardsFromText("  AsKd Qh10c ");
  ASSERT_TRUE(cards.has_value());
  std::string all;
  for (const Card& card : *cards) all += toText(card);
  EXPECT_EQ(all, "A♠K♦Q♥T♣");
  EXPECT_TRUE(cardsFromText("").value().empty());
  for (const char* bad : {"As,Kd", "AsK", "x"}) EXPECT_FALSE(cardsFromText(bad).has_value()) << bad;
}

constexpr int kRandomHands = test::kSanitized ? 10'000 : 200'000;

HandValue valueOf(std::string_view text) { return HandValue::best(cardsFromText(text).value()); }

// The value of five cards as one tells it at a table: what comes most often first, then the higher; and its shape.
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

TEST(HandValue, TakesTheLowAceForAnAce) {
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
