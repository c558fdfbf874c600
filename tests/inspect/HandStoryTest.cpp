#include <inspect/HandStory.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace poker {
namespace {

using testing::HasSubstr;
using testing::Not;
using Suit = Card::Suit;
using Rank = Card::Rank;

constexpr RealMoneyType cents(std::int64_t count) { return RealMoneyType::fromHundredths(count); }
Card hidden(Suit suit, Rank rank) { return {suit, rank, Card::Visibility::Hidden}; }
Card own(Suit suit, Rank rank) { return {suit, rank, Card::Visibility::HiddenOwner}; }

/// A hand that is under way on the flop.
HandStory underWay() {
  HandStory story;
  story.number = 5;
  story.table = "North";
  story.smallBlind = cents(50);
  story.bigBlind = cents(100);
  story.button = 1;
  story.viewer = 1;
  story.players = {{1, "Ann", cents(10000), {own(Suit::Spade, Rank::Ace), own(Suit::Club, Rank::Ten)}, ""},
                   {2, "Bob", cents(60), {hidden(Suit::Heart, Rank::King), hidden(Suit::Heart, Rank::Queen)}, ""},
                   {3, "Cy", cents(9000), {}, ""}};
  story.posts = {{1, UserAction::SmallBlind, cents(50), {}, false}, {2, UserAction::BigBlind, cents(60), {}, true}};
  story.rounds = {{{}, {{3, UserAction::Raise, cents(300), {}, false}, {1, UserAction::Call, cents(250), {}, false}}},
                  {{{Suit::Diamond, Rank::LowAce}, {Suit::Heart, Rank::Two}, {Suit::Club, Rank::Nine}},
                   {{1, UserAction::Check, {}, {}, false}}}};
  return story;
}

// A big blind that its player cannot pay in full is still what the others have to call and raise.
TEST(HandStory, TellsAHandThatIsUnderWay) {
  EXPECT_EQ(toText(underWay()), R"(Hand #5, Hold'em No Limit (0.50/1.00)
Table "North", the button is seat 1
Seat 1: Ann (100.00 in chips)
Seat 2: Bob (0.60 in chips)
Seat 3: Cy (90.00 in chips)
Ann: posts small blind 0.50
Bob: posts big blind 0.60 and is all-in
*** HOLE CARDS ***
Dealt to Ann [As Tc]
Cy: raises 2.00 to 3.00
Ann: calls 2.50
*** FLOP *** [Ad 2h 9c]
Ann: checks
*** SUMMARY ***
The hand is not over
Board [Ad 2h 9c]
Seat 1: Ann (button) (small blind)
Seat 2: Bob (big blind)
Seat 3: Cy
)");
}

TEST(HandStory, NamesNoCardThatTheViewerDoesNotKnow) {
  HandStory story = underWay();
  story.over = true;
  story.finalists = {1, 2, 3};
  story.pots = {{cents(660), {{1, cents(660)}}}};
  const std::string hand = toText(story);
  EXPECT_THAT(hand, HasSubstr("Ann: mucks hand\nBob: mucks hand\nCy: mucks hand\nAnn collected 6.60 from pot\n"));
  EXPECT_THAT(hand,
              HasSubstr("Ann (button) (small blind) mucked [As Tc] and won 6.60\nSeat 2: Bob (big blind) mucked\n"));
  EXPECT_THAT(hand, Not(testing::AnyOf(HasSubstr("Kh"), HasSubstr("Kd"), HasSubstr("Qh"), HasSubstr("Qd"))));

  // One card of two turned up is no hand that was shown; and who looks on was dealt nothing.
  story.players[1].cards[0].setVisibility(Card::Visibility::Shown);
  story.viewer = SeatID();
  for (Card& card : story.players[0].cards) card.setVisibility(Card::Visibility::Hidden);
  EXPECT_THAT(toText(story), Not(testing::AnyOf(HasSubstr("Dealt"), HasSubstr("As"), HasSubstr("Qh"))));
}

TEST(HandStory, TakesWhateverAPeerMayHaveSent) {
  HandStory story = underWay();
  story.table = "a\"b\nSeat 9";
  story.players[2].name = "C\xFF\ny: folds";
  story.game = GameType{77};
  story.limit = LimitType{9};
  story.began = COleDateTime(std::numeric_limits<double>::quiet_NaN());
  story.bigBlind = cents(std::numeric_limits<std::int64_t>::min());
  story.rounds[0].actions.push_back(
      {8, UserAction{0x40000000}, cents(std::numeric_limits<std::int64_t>::max()), {}, true});
  story.rounds[1].board.push_back(Card(Suit{200}, Rank{15}));
  story.rounds.resize(6);
  story.over = true;
  story.finalists = {8, 100};
  story.pots = {{cents(1), {{8, cents(1)}}}, {cents(2), {}}, {cents(3), {{SeatID(), cents(3)}}}};
  const std::string text = toText(story);
  for (const char* part : {"Hand #5, Game 77 Limit 9 (0.50/-92233720368547758.08)\n", "Table \"a\\\"b\\nSeat 9\", ",
                           "C\\xFF\\ny: folds: raises", "Seat 8: Unknown 92233720368547758.07 and is all-in\n",
                           "*** FLOP *** [Ad 2h 9c ??]\n", "*** ROUND 6 ***\n",
                           "Seat 8 collected 0.01 from main pot\nSeat 100 collected 0.03 from side pot 2\n",
                           "Total pot 0.06, main pot 0.01, side pot 1 0.02, side pot 2 0.03 | Rake 0.00\n"}) {
    EXPECT_THAT(text, HasSubstr(part));
  }
  for (const char c : text) EXPECT_TRUE(c == '\n' || (c >= 0x20 && c <= 0x7E)) << int{c};
  EXPECT_EQ(toText(HandStory()).substr(0, 30), "Hand #0, Hold'em No Limit (0.0");
}

}  // namespace
}  // namespace poker
