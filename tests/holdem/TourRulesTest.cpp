#include <examples/holdem/game/Deck.h>
#include <examples/holdem/server/tournament/BlindLevels.h>
#include <examples/holdem/server/tournament/Prizes.h>
#include <examples/holdem/server/tournament/Seating.h>
#include <examples/holdem/server/tournament/TourClock.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <numeric>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace poker::holdem {
namespace {

using Generator = std::mt19937_64;
using Tables = std::vector<TableLoad>;
using namespace std::chrono_literals;
using testing::ElementsAre;

std::size_t playersAt(const Tables& tables) {
  return std::accumulate(tables.begin(), tables.end(), std::size_t{0},
                         [](std::size_t sum, const TableLoad& table) { return sum + table.players; });
}
TableLoad& tableAt(Tables& tables, std::uint32_t number) {
  return *std::find_if(tables.begin(), tables.end(), [&](const TableLoad& each) { return each.table == number; });
}
bool hasFewer(const TableLoad& a, const TableLoad& b) { return a.players < b.players; }

/// Some tables begin a hand, some end theirs, after which players may be out.
void playOn(Tables& tables, Generator& random) {
  for (TableLoad& table : tables) {
    if (table.isIdle) {
      table.isIdle = table.players < 2 || drawBelow(random, 3) == 0;
    } else if (drawBelow(random, 2) == 0) {
      table.isIdle = true;
      while (table.players > 1 && drawBelow(random, 3) == 0) --table.players;
    }
  }
}

/// Does everything that can be done now, as a tournament does. Nobody moves from a table in a hand, nor to one that is to
/// be broken, and all find a seat.
void arrange(Tables& tables, std::size_t seats) {
  auto broken = tableToBreak(tables, seats);
  while (broken && tableAt(tables, *broken).isIdle) {
    std::size_t players = tableAt(tables, *broken).players;
    std::erase_if(tables, [&](const TableLoad& table) { return table.table == broken; });
    for (; players > 0; --players) ++std::min_element(tables.begin(), tables.end(), hasFewer)->players;
    broken = tableToBreak(tables, seats);
  }
  for (int moves = 0;; ++moves) {
    Tables balanced = tables;
    std::erase_if(balanced, [&](const TableLoad& table) { return table.table == broken; });
    const auto move = nextMove(balanced);
    if (!move) break;
    ASSERT_TRUE(tableAt(tables, move->from).isIdle);
    --tableAt(tables, move->from).players;
    ++tableAt(tables, move->to).players;
    ASSERT_LT(moves, 1000) << "players move for ever";
  }
  EXPECT_LE(std::max_element(tables.begin(), tables.end(), hasFewer)->players, seats);
  EXPECT_GE(std::min_element(tables.begin(), tables.end(), hasFewer)->players, 1u);
}

/// What must hold once everything was done with all tables idle.
void checkArranged(const Tables& tables, std::size_t seats) {
  EXPECT_EQ(tables.size(), (playersAt(tables) + seats - 1) / seats);
  const auto [fewest, most] = std::minmax_element(tables.begin(), tables.end(), hasFewer);
  EXPECT_LE(most->players - fewest->players, 1u);
}

TEST(Seating, BringsAnyTournamentToItsLastTable) {
  Generator random(11);
  for (int round = 0; round < 300; ++round) {
    const std::size_t seats = 2 + drawBelow(random, 9), players = 1 + drawBelow(random, 150);
    Tables tables;
    std::set<std::size_t> drawn;
    for (const auto& table : drawTables(players, seats, std::ref(random))) {
      tables.push_back({static_cast<std::uint32_t>(tables.size() + 1), table.size(), true});
      drawn.insert(table.begin(), table.end());
    }
    EXPECT_EQ(playersAt(tables), players);
    EXPECT_EQ(drawn.size(), players);
    checkArranged(tables, seats);
    for (int event = 0; playersAt(tables) > 1; ++event) {
      ASSERT_LT(event, 10'000) << "a table waits for ever";
      playOn(tables, random);
      arrange(tables, seats);
      if (drawBelow(random, 4) == 0) {
        for (TableLoad& table : tables) table.isIdle = true;
        arrange(tables, seats);
        checkArranged(tables, seats);
      }
      if (HasFailure()) FAIL() << "round " << round << ", event " << event;
    }
    EXPECT_EQ(tables.size(), 1u);
  }
}

// The tables that the rules name, whatever the order in which they are listed.
TEST(Seating, TakesTheTablesThatTheRulesName) {
  std::vector<TableLoad> tables{{1, 5, true}, {2, 4, false}, {3, 4, true}, {4, 6, false}, {5, 5, true}};
  do {
    EXPECT_EQ(tableToBreak(tables, 6), 3u);
    EXPECT_EQ(tableToBreak(tables, 5), std::nullopt);
    EXPECT_FALSE(nextMove(tables));  // the one with two more is in a hand
    std::vector<TableLoad> between = tables;
    for (TableLoad& table : between) table.isIdle = true;
    const auto move = nextMove(between);
    ASSERT_TRUE(move);
    EXPECT_EQ(move->from, 4u);
    EXPECT_EQ(move->to, 2u);
  } while (std::next_permutation(tables.begin(), tables.end(),
                                 [](const TableLoad& a, const TableLoad& b) { return a.table < b.table; }));
  EXPECT_EQ(tableToBreak(std::vector<TableLoad>{{7, 1, true}}, 9), std::nullopt);
  EXPECT_FALSE(nextMove({}));
}

TEST(Seating, EverySeatIsAsLikelyForEverybody) {
  Generator random(12);
  constexpr std::size_t kPlayers = 7;
  constexpr int kDraws = 7000;
  std::map<std::pair<std::size_t, std::size_t>, int> seen;  // player and place, counted through the tables
  for (int draw = 0; draw < kDraws; ++draw) {
    std::size_t place = 0;
    for (const auto& table : drawTables(kPlayers, 4, std::ref(random))) {
      for (const std::size_t player : table) ++seen[{player, place++}];
    }
  }
  ASSERT_EQ(seen.size(), kPlayers * kPlayers);
  for (const auto& [playerAndPlace, times] : seen) EXPECT_NEAR(times, 1000, 200);  // nearly seven standard deviations
}

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
