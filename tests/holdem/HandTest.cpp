#include <examples/holdem/game/Blinds.h>
#include <examples/holdem/game/CardText.h>
#include <examples/holdem/game/Hand.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace poker::holdem {
namespace {

using testing::ElementsAre;

/// A table whose players come and go; a hand's plan in words.
class Ring {
 public:
  std::vector<BlindsSeat> seats;
  Blinds blinds;

  explicit Ring(const std::vector<int>& players) {
    for (const int seat : players) sit(seat, false);
  }
  void sit(int seat, bool owes = true) {
    BlindsSeat taken;
    taken.seat = static_cast<std::uint8_t>(seat);
    taken.ready = true;
    taken.owesBig = owes;
    seats.insert(std::find_if(seats.begin(), seats.end(), [&](const BlindsSeat& it) { return it.seat > taken.seat; }),
                 taken);
  }
  void stand(int seat) {
    std::erase_if(seats, [&](const BlindsSeat& it) { return it.seat.value() == seat; });
  }
  BlindsSeat& at(int seat) {
    return *std::find_if(seats.begin(), seats.end(), [&](const BlindsSeat& it) { return it.seat.value() == seat; });
  }
  /// "button small big: players clockwise", with b and s behind who posts.
  std::string hand(std::uint64_t first = 0) {
    const auto plan = blinds.next(seats, first);
    if (!plan) return "none";
    const auto name = [](const SeatID& seat) { return seat.isValid() ? std::to_string(seat.value()) : "-"; };
    std::string text = name(plan->button) + ' ' + name(plan->smallBlind) + ' ' + name(plan->bigBlind) + ':';
    for (std::size_t i = 0; i < plan->size; ++i) {
      text += ' ' + name(plan->seats[i].seat);
      if (plan->seats[i].postsBig) text += 'b';
      if (plan->seats[i].postsSmall) text += 's';
    }
    return text;
  }
};

TEST(Blinds, GoRoundByOneAndStandBeforeEmptySeats) {
  Ring ring({1, 3, 5, 8});
  EXPECT_EQ(ring.hand(1), "3 5 8: 5 8 1 3");
  EXPECT_EQ(ring.hand(), "5 8 1: 8 1 3 5");
  ring.stand(1);  // the big blind leaves: nobody has the small one, and nobody the button after that
  EXPECT_EQ(ring.hand(), "8 - 3: 3 5 8");
  EXPECT_EQ(ring.hand(), "1 3 5: 3 5 8");
  EXPECT_EQ(ring.hand(), "3 5 8: 5 8 3");
  ring.stand(5);
  EXPECT_EQ(ring.hand(), "8 8 3: 3 8");  // two players: the small blind has the button
  EXPECT_EQ(ring.hand(), "3 3 8: 8 3");
  ring.at(8).ready = false;
  EXPECT_EQ(ring.hand(), "none");
}

TEST(Blinds, NewcomersWaitForTheBigBlindOrPost) {
  Ring ring({1, 3, 5});
  EXPECT_EQ(ring.hand(), "1 3 5: 3 5 1");
  ring.sit(4);
  ring.sit(7);
  ring.at(4).posts = ring.at(7).posts = true;
  // Seat 7 is the big blind and owes nothing more; seat 4 sits between the button and the blinds.
  EXPECT_EQ(ring.hand(), "3 5 7: 5 7 1 3");
  EXPECT_EQ(ring.hand(), "5 7 1: 7 1 3 4b 5");
  ring.sit(8);
  EXPECT_EQ(ring.hand(), "7 1 3: 1 3 4 5 7");  // waits
  ring.at(8).posts = true;
  EXPECT_EQ(ring.hand(), "1 3 4: 3 4 5 7 8b 1");

  // A third player joins two: nobody gets the button and the big blind together.
  Ring two({2, 6});
  EXPECT_EQ(two.hand(0), "2 2 6: 6 2");
  two.sit(8, false);
  EXPECT_EQ(two.hand(), "2 6 8: 6 8 2");
  Ring between({2, 6});
  EXPECT_EQ(between.hand(0), "2 2 6: 6 2");
  between.sit(4, false);
  EXPECT_EQ(between.hand(), "4 6 2: 6 2 4");

  // Where too few are left who owe nothing, the game begins anew and nobody owes.
  Ring alone({1, 3});
  EXPECT_EQ(alone.hand(), "1 1 3: 3 1");
  alone.stand(1);
  alone.stand(3);
  alone.sit(0);
  alone.sit(6);
  alone.sit(8);
  EXPECT_EQ(alone.hand(), "1 - 6: 6 8 0");
  EXPECT_FALSE(alone.at(0).owes());
}

TEST(Blinds, WhoSitsOutOwesWhatWasMissed) {
  Ring ring({1, 3, 5, 7});
  EXPECT_EQ(ring.hand(), "1 3 5: 3 5 7 1");
  ring.at(7).ready = false;
  EXPECT_EQ(ring.hand(), "3 5 1: 5 1 3");  // seat 7 would have been the big blind
  EXPECT_TRUE(ring.at(7).owesBig);
  EXPECT_FALSE(ring.at(7).owesSmall);
  ring.at(1).ready = false;
  EXPECT_EQ(ring.hand(), "5 5 3: 3 5");  // seat 1 would have been the small one
  EXPECT_TRUE(ring.at(1).owesSmall);
  ring.at(1).ready = ring.at(1).posts = true;
  ring.at(7).ready = ring.at(7).posts = true;
  EXPECT_EQ(ring.hand(), "1 3 5: 3 5 7b 1s");
}

RealMoneyType chips(std::int64_t units) { return RealMoneyType::fromUnits(units); }

/// One hand whose cards and players are chosen; what happens is noted in words.
class Play : public HandEvents {
 public:
  Stakes stakes;
  HandPlan plan;
  std::vector<std::string> story;
  std::map<int, bool> showsAnywayOf;

  /// Players from seat 0 on, each with so many units. Seat 0 sits left of the button, which is the last player's; with two players
  /// seat 1 has the button.
  explicit Play(std::vector<std::int64_t> stacks, std::string_view cards = "")
      : stacks_(std::move(stacks)), hand_(*this) {
    plan.size = stacks_.size();
    for (std::size_t i = 0; i < plan.size; ++i) plan.seats[i].seat = static_cast<std::uint8_t>(i);
    plan.button = static_cast<std::uint8_t>(plan.size - 1);
    plan.smallBlind = static_cast<std::uint8_t>(plan.size == 2 ? 1 : 0);
    plan.bigBlind = static_cast<std::uint8_t>(plan.size == 2 ? 0 : 1);
    std::mt19937_64 random(7);
    deck_.shuffle(random);
    deck_.stack(*cardsFromText(cards));
  }

  Hand& begin() {
    hand_.begin(
        stakes, plan, [&](const SeatID& seat) { return chips(stacks_[seat.value()]); }, deck_);
    return hand_;
  }
  Hand& hand() { return hand_; }

  /// What is open, in words: "fold call=2 raise=4-100".
  std::string open() const {
    std::string text;
    for (const auto& [action, range] : hand_.options().options()) {
      if (!text.empty()) text += ' ';
      text += actionCodeToStringForChat(action);
      if (range.second == kZeroMoney) continue;
      text += '=' + range.first.toString();
      if (range.first != range.second) text += '-' + range.second.toString();
    }
    return text;
  }
  int turn() const { return hand_.turn() == nullptr ? -1 : hand_.turn()->seat.value(); }
  void act(UserAction action, std::int64_t units = 0) { ASSERT_TRUE(hand_.act(action, chips(units))) << open(); }
  void fold() { act(UserAction::Fold); }
  void check() { act(UserAction::Check); }
  void call() { act(UserAction::Call); }
  std::vector<std::string> stacksAfter() const {
    std::vector<std::string> all;
    for (const HandPlayer& player : hand_.players()) all.push_back(player.stack.toString());
    return all;
  }

  void onBlind(const HandPlayer&, UserAction, const RealMoneyType&) override {}
  void onDealt() override {}
  void onAction(const HandPlayer&, UserAction, const RealMoneyType&) override {}
  void onUncalled(const HandPlayer& player, const RealMoneyType& amount) override {
    story.push_back(std::to_string(player.seat.value()) + " gets back " + amount.toString());
  }
  void onRoundOver(Street) override {}
  void onBoard(Street, std::span<const Card>) override {}
  void onTurnedUp(const HandPlayer& player) override {
    story.push_back(std::to_string(player.seat.value()) + " shows");
  }
  bool showsAnyway(const HandPlayer& player) override { return showsAnywayOf[player.seat.value()]; }
  void onOver() override { story.emplace_back("over"); }

 private:
  std::vector<std::int64_t> stacks_;
  Deck deck_;
  Hand hand_;
};

TEST(NoLimit, ARaiseIsAtLeastTheLastOneAndAShortAllInReopensOnlyWithEnough) {
  Play play({100, 100, 100, 21, 27});  // blinds 1 and 2; seat 2 begins
  play.begin();
  EXPECT_EQ(play.turn(), 2);
  EXPECT_EQ(play.open(), "calls=2 raises=4-100 folds allin=100");
  play.act(UserAction::Raise, 14);                    // by 12, to 14
  EXPECT_EQ(play.open(), "calls=14 folds allin=21");  // seat 3: 21 is no full raise, which would be 26
  play.act(UserAction::AllIn);
  EXPECT_EQ(play.open(), "calls=21 folds allin=27");
  play.act(UserAction::AllIn);
  // Seat 0 has not acted: a full raise is twelve above 27.
  EXPECT_EQ(play.open(), "calls=26 raises=38-99 folds allin=99");
  play.fold();
  play.fold();
  // Seat 2 faces 13 more than when it acted, which two short all-ins have made a full raise.
  EXPECT_EQ(play.turn(), 2);
  EXPECT_EQ(play.open(), "calls=13 folds");  // but nobody is left to raise against
  play.call();
  EXPECT_EQ(play.hand().pots().size(), 2u);

  Play single({100, 100, 100, 21});
  single.begin();
  single.act(UserAction::Raise, 14);
  single.act(UserAction::AllIn);
  single.call();
  single.call();
  EXPECT_EQ(single.turn(), 2);
  EXPECT_EQ(single.open(), "calls=7 folds");  // seven more is no full raise
}

TEST(NoLimit, WhatIsNotOpenChangesNothing) {
  Play play({100, 100, 100});
  play.begin();
  const std::string open = play.open();
  for (const auto& [action, amount] :
       {std::pair(UserAction::Check, 0), std::pair(UserAction::Bet, 10), std::pair(UserAction::Raise, 3),
        std::pair(UserAction::Raise, 101), std::pair(UserAction::Call, 3), std::pair(UserAction::Raise, -4)}) {
    EXPECT_FALSE(play.hand().act(action, chips(amount)));
    EXPECT_EQ(play.open(), open);
    EXPECT_EQ(play.turn(), 2);
  }
}

TEST(FixedLimit, FourBetsAreTheMostAndAnAllInOfHalfABetCounts) {
  Play play({100, 100, 100});
  play.stakes.limit = LimitType::FixedLimit;
  play.begin();
  EXPECT_EQ(play.open(), "calls=2 raises=4 folds");
  play.act(UserAction::Raise);
  play.act(UserAction::Raise);
  EXPECT_EQ(play.hand().raisesLeft(), 1);
  play.act(UserAction::Raise);
  EXPECT_EQ(play.open(), "calls=4 folds");
  EXPECT_EQ(play.hand().raisesLeft(), 0);
  play.call();
  play.call();
  EXPECT_EQ(play.open(), "checks bets=2 folds");
  for (int i = 0; i < 3; ++i) play.check();
  EXPECT_EQ(play.open(), "checks bets=4 folds");  // the turn: twice as much

  // Two players may go on for ever.
  Play two({100, 100});
  two.stakes.limit = LimitType::FixedLimit;
  two.begin();
  for (int i = 0; i < 10; ++i) two.act(UserAction::Raise);
  EXPECT_EQ(two.hand().raisesLeft(), Betting::kManyRaises);

  // On the flop seat 0 bets four, seat 1 is all-in on top: by half a bet, or by less.
  const auto allInFor = [](std::int64_t stack) {
    Play half({100, 4 + stack, 100});
    half.stakes.limit = LimitType::FixedLimit;
    half.stakes.smallBlind = chips(2);
    half.stakes.bigBlind = chips(4);
    half.begin();
    half.call();
    half.call();
    half.check();
    half.act(UserAction::Bet);
    half.act(UserAction::AllIn);
    std::string open = half.open();
    half.call();
    return open + "; " + half.open();
  };
  EXPECT_EQ(allInFor(6), "calls=6 raises=10 folds; calls=2 raises=6 folds");
  EXPECT_EQ(allInFor(5), "calls=5 raises=8 folds; calls=1 folds");
}

TEST(Pots, EveryAllInOpensASidePotAndOddHundredthsGoToTheFirstAfterTheButton) {
  // Seats 0, 1, 2 have the same straight on the board, seat 3 has less.
  Play play({10, 25, 50, 50}, "2c 2d 2h 3c 3d 3h 2s 3s Ah Kd Qs Jc Td");
  play.stakes.rake = {500, chips(3)};
  play.begin();
  play.act(UserAction::AllIn);  // seat 2
  play.call();
  play.call();
  play.call();
  const Pots& pots = play.hand().pots();
  ASSERT_EQ(pots.size(), 3u);
  EXPECT_EQ(pots.rake(), chips(3));  // five per cent of 40 are 2, of 45 only 1 until the cap
  EXPECT_EQ(pots[0].amount, chips(38));
  EXPECT_EQ(pots[1].amount, chips(44));
  EXPECT_EQ(pots[2].amount, chips(50));
  EXPECT_THAT(play.stacksAfter(), ElementsAre("9.50", "24.17", "49.17", "49.16"));
}

TEST(Pots, WhatNobodyCalledGoesBack) {
  Play walk({100, 100, 100});
  walk.begin();
  walk.fold();
  walk.fold();
  EXPECT_THAT(walk.story, ElementsAre("1 gets back 1", "over"));
  EXPECT_THAT(walk.stacksAfter(), ElementsAre("99", "101", "100"));
}

TEST(Pots, AShortBigBlindIsCalledInFullByWhoCanStillWinIt) {
  // The big blind has one unit. The others must call two, and play for the rest among themselves.
  Play play({100, 1, 100});
  play.begin();
  EXPECT_EQ(play.open(), "calls=2 raises=4-100 folds allin=100");
  play.call();
  EXPECT_EQ(play.open(), "calls=1 raises=3-99 folds allin=99");
  play.fold();
  EXPECT_THAT(play.story, testing::Contains("2 gets back 1"));

  // With two players the small blind has nothing to call when the big blind has less.
  Play two({1, 100});
  two.begin();
  EXPECT_TRUE(two.hand().isOver());
}

TEST(ShowDown, TheLastToBetShowsFirstAndWhoIsBeatenMucks) {
  // Seat 1 has aces, seat 0 kings, seat 2 queens; seat 1 bets the river.
  Play play({100, 100, 100}, "Kc Ac Qc Kd Ad Qd 2h 3h 4s 7s 9h");
  play.begin();
  play.call();
  play.call();
  play.check();
  for (int street = 0; street < 2; ++street) {
    for (int i = 0; i < 3; ++i) play.check();
  }
  play.check();
  play.act(UserAction::Bet, 10);
  play.call();
  play.call();
  EXPECT_THAT(play.story, ElementsAre("1 shows", "over"));

  // Nobody bets: seat 0 begins, and each shows who beats what is shown. Seat 2 wants to be seen.
  Play checked({100, 100, 100}, "Kc Ac Qc Kd Ad Qd 2h 3h 4s 7s 9h");
  checked.showsAnywayOf[2] = true;
  checked.begin();
  checked.call();
  checked.call();
  checked.check();
  for (int i = 0; i < 9; ++i) checked.check();
  EXPECT_THAT(checked.story, ElementsAre("0 shows", "1 shows", "2 shows", "over"));

  // When nobody can bet any more, all cards are turned up before the board is.
  Play allIn({100, 100, 100});
  allIn.begin();
  allIn.act(UserAction::AllIn);
  allIn.fold();
  allIn.call();
  EXPECT_EQ(allIn.story[0], "1 shows");
  EXPECT_EQ(allIn.story[1], "2 shows");
  EXPECT_TRUE(allIn.hand().isOver());
}

/// Awards pots chip by chip, for which it needs no notion of a side pot: a chip of a level goes to the best of those who have paid
/// that level.
std::vector<double> awardByLevels(const Hand& hand) {
  std::vector<double> won(hand.players().size());
  std::int64_t highest = 0;
  for (const HandPlayer& player : hand.players()) highest = std::max(highest, player.paid.hundredths());
  for (std::int64_t level = 0; level < highest; level += 100) {
    double chipsHere = 0;
    HandValue best;
    std::vector<std::size_t> winners;
    for (std::size_t i = 0; i < won.size(); ++i) {
      const HandPlayer& player = hand.players()[i];
      if (player.paid.hundredths() <= level) continue;
      chipsHere += 100;
      if (player.folded) continue;
      const HandValue value = hand.players().remaining() > 1 ? hand.valueOf(player) : HandValue();
      if (winners.empty() || value > best) winners.clear();
      if (winners.empty() || value == best) {
        best = value;
        winners.push_back(i);
      }
    }
    for (const std::size_t winner : winners) won[winner] += chipsHere / static_cast<double>(winners.size());
  }
  return won;
}

TEST(Hand, RandomPlayEndsAndEveryChipFindsItsWinner) {
  std::mt19937_64 random(20);
  std::size_t sidePots = 0;
  for (int round = 0; round < 4000; ++round) {
    const auto draw = [&](std::uint64_t n) { return static_cast<std::int64_t>(drawBelow(random, n)); };
    std::vector<std::int64_t> stacks(static_cast<std::size_t>(2 + draw(9)));
    for (std::int64_t& stack : stacks) stack = 1 + draw(round % 2 == 0 ? 30 : 200);
    const std::int64_t all = std::accumulate(stacks.begin(), stacks.end(), std::int64_t{0});
    Play play(stacks);
    if (round % 3 == 0) play.stakes.limit = LimitType::FixedLimit;
    Deck deck;
    deck.shuffle(random);
    Hand& hand = play.hand();
    hand.begin(
        play.stakes, play.plan, [&](const SeatID& seat) { return chips(stacks[seat.value()]); }, deck);
    int actions = 0;
    while (!hand.isOver()) {
      ASSERT_NE(hand.turn(), nullptr);
      ASSERT_LT(++actions, 1000);
      const auto& options = hand.options().options();
      const auto& [action, range] = *(options.begin() + draw(options.size()));
      const std::int64_t units = range.second.hundredths() / 100 - range.first.hundredths() / 100;
      const RealMoneyType amount =
          range.first + (units > 0 ? chips(draw(static_cast<std::uint64_t>(units) + 1)) : kZeroMoney);
      if (action == UserAction::Fold && draw(3) != 0) continue;
      ASSERT_TRUE(hand.act(action, amount));
    }
    RealMoneyType sum;
    const std::vector<double> expected = awardByLevels(hand);
    for (std::size_t i = 0; i < hand.players().size(); ++i) {
      const HandPlayer& player = hand.players()[i];
      sum += player.stack;
      ASSERT_GE(player.stack, kZeroMoney);
      ASSERT_EQ(player.stack, chips(stacks[i]) - player.paid + player.won);
      // Each pot may give a winner a hundredth more or less than the exact share.
      ASSERT_NEAR(static_cast<double>(player.won.hundredths()), expected[i], static_cast<double>(hand.pots().size()));
    }
    ASSERT_EQ(sum, chips(all));
    sidePots += hand.pots().size() > 1 ? 1 : 0;
  }
  EXPECT_GT(sidePots, 500u);
}

}  // namespace
}  // namespace poker::holdem
