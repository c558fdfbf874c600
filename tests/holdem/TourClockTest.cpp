#include <examples/holdem/server/tournament/TourClock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <string>

namespace poker::holdem {
namespace {

using namespace std::chrono_literals;

constexpr Clock::time_point kStart{1'000'000s};

TourSettings fourLevels(TOUR_NAMES::SwitchType type, std::uint32_t length) {
  TourSettings tour;
  tour.switchType = type;
  tour.levelLength = length;
  for (const std::int64_t blind : {10, 20, 40, 80}) {
    tour.levels.push_back({RealMoneyType::fromUnits(blind), RealMoneyType::fromUnits(blind * 2)});
  }
  return tour;
}

TEST(TourClock, GoesByTimeWithANoticeAMinuteBefore) {
  const TourSettings tour = fourLevels(TOUR_NAMES::SwitchType::ByTime, 300);
  TourClock clock(tour);
  EXPECT_FALSE(clock.isLevelOver(kStart));
  clock.start(kStart);
  EXPECT_EQ(clock.level(), 1);
  EXPECT_EQ(clock.unitsLeft(kStart + 500ms), 300) << "rounded up";
  EXPECT_EQ(clock.next(), kStart + 240s);
  EXPECT_FALSE(clock.isNoticeDue(kStart + 239s));
  EXPECT_TRUE(clock.isNoticeDue(kStart + 240s));
  EXPECT_FALSE(clock.isNoticeDue(kStart + 241s)) << "once a level";
  EXPECT_EQ(clock.next(), kStart + 300s);
  EXPECT_FALSE(clock.isLevelOver(kStart + 299s));
  EXPECT_TRUE(clock.isLevelOver(kStart + 301s));
  clock.endLevel(kStart + 301s);
  EXPECT_EQ(clock.blinds().bigBlind, RealMoneyType::fromUnits(40));
  EXPECT_EQ(clock.unitsLeft(kStart + 301s), 300);

  // While the host has stopped it, it stands.
  clock.pause(kStart + 400s);
  clock.resume(kStart + 1400s);
  EXPECT_EQ(clock.unitsLeft(kStart + 1400s), 201);

  for (int level = 2; level < 4; ++level) clock.endLevel(kStart + 2000s);
  EXPECT_EQ(clock.level(), 4);
  EXPECT_FALSE(clock.isLevelOver(kStart + 1'000'000s)) << "the last one goes on";
  EXPECT_FALSE(clock.isNoticeDue(kStart + 1'000'000s));
  EXPECT_EQ(clock.next(), std::nullopt);
}

TEST(TourClock, StopsForBreaksAndGoesOnWithTheNextLevel) {
  TourSettings tour = fourLevels(TOUR_NAMES::SwitchType::ByTime, 30);
  tour.breakEvery = 2;
  tour.breakTime = 5min;
  TourClock clock(tour);
  clock.start(kStart);
  EXPECT_TRUE(clock.isNoticeDue(kStart)) << "a level of less than a minute";
  clock.endLevel(kStart + 30s);
  EXPECT_FALSE(clock.isStopped());
  clock.endLevel(kStart + 60s);
  EXPECT_TRUE(clock.isStopped());
  EXPECT_FALSE(clock.isBreak());
  EXPECT_FALSE(clock.isLevelOver(kStart + 100s));
  EXPECT_EQ(clock.next(), std::nullopt) << "it is the tables that are waited for";
  clock.beginBreak(kStart + 90s);
  EXPECT_EQ(clock.secondsOfBreak(kStart + 90s), 300);
  clock.pause(kStart + 100s);
  clock.resume(kStart + 200s);
  EXPECT_FALSE(clock.isBreakOver(kStart + 489s));
  EXPECT_TRUE(clock.isBreakOver(kStart + 490s));
  clock.endBreak(kStart + 490s);
  EXPECT_FALSE(clock.isStopped());
  EXPECT_EQ(clock.level(), 3);
  EXPECT_EQ(clock.unitsLeft(kStart + 490s), 30);
}

TEST(TourClock, KnowsWhenChipsMayBeBought) {
  TourSettings tour = fourLevels(TOUR_NAMES::SwitchType::ByTime, 300);
  tour.rebuyLevels = 2;
  const auto opened = [&] {  // in each level: r for re-buys, a for add-ons, x when both are over; b: the break after it
    TourClock clock(tour);
    std::string text = clock.areRebuysOpen() || clock.isAddOnOpen() || clock.areExtrasOver() ? "!" : "";
    const auto note = [&] {
      text += clock.areRebuysOpen() ? "r" : "";
      text += clock.isAddOnOpen() ? "a" : "";
      text += clock.areExtrasOver() ? "x" : "";
      text += ' ';
    };
    clock.start(kStart);
    for (int level = 1; level < 4; ++level) {
      note();
      clock.endLevel(kStart);
      if (!clock.isStopped()) continue;
      clock.beginBreak(kStart);
      text += 'b';
      note();
      clock.endBreak(kStart);
    }
    return text;
  };
  EXPECT_EQ(opened(), "r r x ");
  tour.addOnChips = RealMoneyType::fromUnits(1000);
  EXPECT_EQ(opened(), "r r a ");
  tour.breakEvery = 2;
  EXPECT_EQ(opened(), "r r bra x ");
  tour.breakEvery = 1;
  EXPECT_EQ(opened(), "r br r bra x bx ");
  tour.rebuyLevels = 0;
  EXPECT_EQ(opened(), "a ba x bx x bx ");
}

TEST(TourClock, CountsTheHandsOfTheTableThatPlaysMost) {
  const TourSettings tour = fourLevels(TOUR_NAMES::SwitchType::ByHands, 3);
  TourClock clock(tour);
  clock.start(kStart);
  for (const std::uint32_t table : {1u, 2u, 3u, 1u}) clock.countHand(table);
  EXPECT_EQ(clock.unitsLeft(kStart), 1);
  EXPECT_FALSE(clock.isLevelOver(kStart + 1h));
  EXPECT_TRUE(clock.isNoticeDue(kStart)) << "a hand before";
  clock.countHand(1);
  EXPECT_TRUE(clock.isLevelOver(kStart));
  clock.endLevel(kStart);
  EXPECT_EQ(clock.level(), 2);
  EXPECT_EQ(clock.unitsLeft(kStart), 3);
}

}  // namespace
}  // namespace poker::holdem
