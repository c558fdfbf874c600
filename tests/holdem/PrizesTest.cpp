#include <examples/holdem/server/tournament/BlindLevels.h>
#include <examples/holdem/server/tournament/Prizes.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <vector>

namespace poker::holdem {
namespace {

using testing::ElementsAre;

RealMoneyType cents(std::int64_t hundredths) { return RealMoneyType::fromHundredths(hundredths); }

TEST(Prizes, AreTheFundToTheLastHundredthAndNeverGrowWithThePlace) {
  for (std::size_t entries = 1; entries <= 5000; entries += entries < 1000 ? 1 : 997) {
    const std::vector<std::uint32_t> shares = usualShares(entries);
    EXPECT_EQ(std::accumulate(shares.begin(), shares.end(), 0u), 10'000u);
    EXPECT_TRUE(std::is_sorted(shares.rbegin(), shares.rend()));
    EXPECT_GE(shares[shares.size() - 1], 1u);
    EXPECT_LE(shares.size(), entries / 6 + 1);
    EXPECT_GE(shares.size(), entries / 10);
    for (const RealMoneyType fund : {kZeroMoney, cents(1), cents(99), cents(123'457), kLargestMoney * 1000}) {
      // As many as were expected; fewer than the shares are for.
      for (const std::size_t players : {entries, entries / 9 + 1}) {
        const std::vector<RealMoneyType> prizes = prizesOf(fund, shares, players);
        EXPECT_LE(prizes.size(), players);
        EXPECT_EQ(std::accumulate(prizes.begin(), prizes.end(), kZeroMoney), fund);
        EXPECT_TRUE(std::is_sorted(prizes.rbegin(), prizes.rend()));
        EXPECT_GE(prizes[prizes.size() - 1], kZeroMoney);
      }
    }
    if (HasFailure()) FAIL() << entries << " entries";
  }
  // The last paid place brings back what it cost.
  const std::vector<std::uint32_t> shares = usualShares(5000);
  EXPECT_GE(prizesOf(cents(100) * 5000, shares, 5000)[shares.size() - 1], cents(100));
}

TEST(Prizes, AreThoseThatTheHostHasChosen) {
  const std::vector<std::uint32_t> shares{5000, 3000, 2000};
  EXPECT_THAT(prizesOf(cents(1001), shares, 9), ElementsAre(cents(501), cents(300), cents(200)));
  EXPECT_THAT(prizesOf(cents(1001), shares, 2), ElementsAre(cents(701), cents(300)));
  EXPECT_THAT(prizesOf(cents(1001), shares, 0), ElementsAre());
}

/// One digit before the zeros, or two that are below 20 or end with a 5: 300, 0.25 and 1800 are, 2200 is not.
bool isRound(RealMoneyType amount) {
  std::int64_t number = amount.hundredths();
  while (number % 10 == 0) number /= 10;
  return number < 10 || (number < 100 && (number % 5 == 0 || number < 20));
}

TEST(BlindLevels, GrowSteadilyInRoundNumbers) {
  for (const std::int64_t small : {1, 2, 5, 25, 100, 500, 1000, 2500, 100'000, 100'000'000}) {
    for (const std::int64_t ratio : {1, 2, 3}) {
      const std::vector<BlindLevel> levels = usualLevels({cents(small), cents(small * ratio)});
      EXPECT_EQ(levels[0].smallBlind, cents(small));
      EXPECT_EQ(levels[0].bigBlind, cents(small * ratio));
      for (std::size_t i = 1; i < levels.size(); ++i) {
        const RealMoneyType before = levels[i - 1].smallBlind, now = levels[i].smallBlind;
        EXPECT_TRUE(before == cents(1) ? now == cents(2) : now * 3 >= before * 4 && now * 2 <= before * 3);
        EXPECT_TRUE(isRound(now)) << now.toString();
        EXPECT_EQ(levels[i].bigBlind, now * ratio);
      }
      const RealMoneyType last = levels[levels.size() - 1].bigBlind, most = cents(small * ratio) * 10'000;
      EXPECT_LE(last, kLargestMoney);
      EXPECT_TRUE(last >= most || last * 3 > kLargestMoney * 2);
      EXPECT_LT(levels.size(), 40u);
    }
  }
  const std::vector<BlindLevel> usual = usualLevels({cents(1000), cents(2000)});
  std::vector<std::int64_t> units;
  for (std::size_t i = 0; i < 14; ++i) units.push_back(usual[i].smallBlind.hundredths() / 100);
  EXPECT_THAT(units, ElementsAre(10, 15, 20, 30, 40, 60, 80, 120, 180, 250, 350, 500, 700, 1000));
  EXPECT_THROW(usualLevels({kZeroMoney, cents(100)}), std::invalid_argument);
  EXPECT_THROW(usualLevels({cents(101), cents(100)}), std::invalid_argument);
}

TEST(BlindLevels, AreTextWithTheirBreaks) {
  TourSettings tour;
  tour.levels = {{cents(1000), cents(2000)}, {cents(1500), cents(3000)}, {cents(50), cents(100)}};
  tour.breakEvery = 1;
  tour.levelLength = 90;
  EXPECT_EQ(levelsText(tour), "1  10/20  90 s\nBreak  5 min\n2  15/30  90 s\nBreak  5 min\n3  0.50/1");
  tour.breakEvery = 2;
  tour.switchType = TOUR_NAMES::SwitchType::ByHands;
  tour.breakTime = std::chrono::milliseconds(500);
  EXPECT_EQ(levelsText(tour), "1  10/20  90 hands\n2  15/30  90 hands\nBreak  0.5 s\n3  0.50/1");
}

}  // namespace
}  // namespace poker::holdem
