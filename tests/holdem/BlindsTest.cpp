#include <examples/holdem/game/Blinds.h>

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

namespace poker::holdem {
namespace {

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

TEST(Blinds, OverManyHandsEverybodyPaysAlike) {
  // With the same players all the time, in any number, big blinds differ by one at most, and so do buttons.
  for (std::size_t players = 2; players <= kMaxSeats; ++players) {
    std::vector<int> seats;
    for (std::size_t i = 0; i < players; ++i) seats.push_back(static_cast<int>(i));
    Ring ring(seats);
    std::map<std::string, int> big;
    for (std::size_t hand = 0; hand < players * 7; ++hand) {
      const std::string plan = ring.hand(hand);
      ++big[plan.substr(0, plan.find(':'))];
    }
    EXPECT_EQ(big.size(), players);
    for (const auto& [plan, count] : big) EXPECT_EQ(count, 7) << plan;
  }
}

}  // namespace
}  // namespace poker::holdem
