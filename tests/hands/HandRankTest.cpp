#include <examples/holdem/game/Deck.h>
#include <examples/holdem/game/HandValue.h>
#include <inspect/hands/HandRank.h>

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace poker {
namespace {

// Two who worked it out without each other come to the same.
TEST(HandRank, IsWhatTheServerMakesOfTheSameCards) {
  std::mt19937_64 random(4);
  holdem::Deck deck;
  for (unsigned i = 0; i < 100'000; ++i) {
    deck.shuffle(random);
    std::array<Card, 9> cards;
    for (Card& card : cards) card = deck.deal();
    const std::span<const Card> all(cards);
    const auto board = all.subspan(4);
    const HandRank one = HandRank::of(all.first(2), board);
    const HandRank two = HandRank::of(all.subspan(2, 2), board);
    const auto first = holdem::HandValue::best(all.first(2), board);
    const auto second = holdem::HandValue::best(all.subspan(2, 2), board);
    ASSERT_EQ(one.words(), first.toString());
    ASSERT_EQ(one <=> two, first <=> second) << one.words() << ", " << two.words();
  }
}

TEST(HandRank, IsNoneWithoutFiveDifferentCards) {
  const Card ace(Card::Suit::Spade, Card::Rank::Ace);
  const Card low(Card::Suit::Spade, Card::Rank::LowAce);
  const Card none;
  const auto card = [](Card::Rank rank) { return Card(Card::Suit::Heart, rank); };
  const std::array board = {card(Card::Rank::Two), card(Card::Rank::Three), card(Card::Rank::Four)};
  EXPECT_TRUE(HandRank::of(std::array{ace, card(Card::Rank::Five)}, board).isHand());
  EXPECT_FALSE(HandRank::of(std::array{ace}, board).isHand());
  EXPECT_FALSE(HandRank::of(std::array{ace, low}, board).isHand());
  EXPECT_FALSE(HandRank::of(std::array{ace, none}, board).isHand());
  EXPECT_EQ(HandRank().words(), "no hand");
}

}  // namespace
}  // namespace poker
