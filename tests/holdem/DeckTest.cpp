#include <examples/holdem/game/CardText.h>
#include <examples/holdem/game/Deck.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <initializer_list>
#include <optional>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace poker::holdem {
namespace {

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

}  // namespace
}  // namespace poker::holdem
