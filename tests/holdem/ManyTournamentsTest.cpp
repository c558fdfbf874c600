// Whole tournaments of sixty bots over TCP, of many kinds: what must hold after each hand, and at the end.

#include "Place.h"

#include <examples/holdem/server/tournament/BlindLevels.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace poker::holdem {
namespace {

using namespace test;

constexpr unsigned kBots = 60;
constexpr unsigned kGroups = 10;  // of tests, which may run side by side
constexpr unsigned kTournamentsEach = 10;

/// Another kind of tournament for each seed.
TourSettings tourOf(unsigned seed) {
  std::mt19937 random(seed);
  const auto oneOf = [&](unsigned first, unsigned last) {
    return first + static_cast<unsigned>(random()) % (last - first + 1);
  };
  TourSettings tour;
  tour.name = "Tournament " + std::to_string(seed);
  tour.limit = oneOf(0, 3) == 0 ? LimitType::FixedLimit : LimitType::NoLimit;
  tour.seats = oneOf(5, kMaxSeats);
  tour.maxPlayers = tour.startWith = kBots;
  tour.buyIn = RealMoneyType::fromHundredths(oneOf(1, 10'000));
  tour.fee = RealMoneyType::fromHundredths(oneOf(0, 300));
  if (oneOf(0, 2) == 0) tour.guaranteed = RealMoneyType::fromHundredths(oneOf(100'000, 700'000));
  tour.chips = RealMoneyType::fromUnits(600);
  tour.levels = usualLevels({RealMoneyType::fromUnits(10), RealMoneyType::fromUnits(20)});
  tour.switchType = TOUR_NAMES::SwitchType::ByHands;
  tour.levelLength = oneOf(2, 5);
  tour.breakEvery = oneOf(0, 4);
  tour.breakTime = std::chrono::milliseconds(oneOf(0, 20));
  if (oneOf(0, 1) == 0) {
    tour.rebuys = oneOf(1, 3);
    tour.rebuyLevels = oneOf(1, 4);
    tour.rebuyPrice = RealMoneyType::fromUnits(5);
    tour.rebuyChips = RealMoneyType::fromUnits(600);
  }
  if (oneOf(0, 1) == 0) {
    tour.addOnPrice = RealMoneyType::fromUnits(7);
    tour.addOnChips = RealMoneyType::fromUnits(900);
  }
  tour.seatingTime = tour.handPause = {};
  tour.rebuyTime = std::chrono::milliseconds(200);
  tour.absentTime = std::chrono::milliseconds(50);
  tour.seed = seed;
  return tour;
}

class TournamentOfBots {
 public:
  explicit TournamentOfBots(unsigned seed) : random_(seed), place_(settingsOf(seed)) {
    for (unsigned number = 0; number < kBots; ++number) {
      BotSettings settings = place_.bot(number);
      settings.player.tournamentID = tour().id();
      settings.player.registersForTour = true;
      settings.player.reconnects = 100;
      settings.style = static_cast<Style>((number + seed) % 3);
      settings.seed = seed * 1000 + number;
      settings.rebuys = number % 3;
      settings.addsOn = number % 2 == 0;
      settings.followsTour = true;
      bots_.push_back(std::make_unique<Bot>(place_.context, settings, [this](PlayerEnd end, std::string_view why) {
        ++ended_;
        if (end != PlayerEnd::Left) ADD_FAILURE() << why;
      }));
      bots_.back()->start();
    }
  }

  void play() {
    const std::uint64_t breaksAt = 10 + random_() % 50;  // hands
    bool hasBroken = false;
    const auto isOver = [&] {
      checkTables();
      const bool isDue = !hasBroken && hands_ >= breaksAt && tour().status() == TOUR_NAMES::TourStatus::Started;
      if (isDue) breakSomeConnections();
      hasBroken = hasBroken || isDue;
      return tour().isOver();
    };
    ASSERT_TRUE(place_.runUntil(isOver, std::chrono::seconds(240))) << "after " << hands_ << " hands";
    EXPECT_TRUE(hasBroken) << "no connections were broken in " << hands_ << " hands";
    ASSERT_TRUE(place_.runUntil([&] { return ended_ == kBots; }));
    checkResults();
  }

 private:
  static ServerSettings settingsOf(unsigned seed) {
    ServerSettings settings = quickServer(0, 2);
    settings.house.tables.clear();
    settings.house.tournaments = {tourOf(seed)};
    return settings;
  }
  Tournament& tour() { return *place_.server.house().tournaments().all().front(); }

  /// After each hand.
  void checkTables() {
    std::uint64_t hands = 0;
    tour().forEachTable([&](TourTable& table) { hands += table.handsPlayed(); });
    if (hands == handsSeen_) return;
    if (hands > handsSeen_) hands_ += hands - handsSeen_;
    handsSeen_ = hands;
    RealMoneyType chips;
    std::set<std::string> names;
    tour().forEachTable([&](TourTable& table) {
      chips += table.chips();
      EXPECT_LE(table.players(), tour().settings().seats);
      table.forEachSeat([&](const SeatID&, const std::string& name, const RealMoneyType&, const RealMoneyType&,
                            UserState) { EXPECT_TRUE(names.insert(name).second) << name << " sits at two tables"; });
    });
    EXPECT_EQ(names.size(), tour().isOver() ? 0 : tour().playersLeft());
    EXPECT_EQ(chips, tour().isOver() ? kZeroMoney : tour().chipsInPlay());
  }

  /// Who comes back is at its table again.
  void breakSomeConnections() {
    for (const auto& bot : bots_) {
      if (random_() % 5 == 0) bot->client().breakConnection();
    }
  }

  void checkResults() {
    std::vector<const Tournament::Player*> byPlace(kBots);
    RealMoneyType prizes;
    for (const auto& [account, player] : tour().players()) {
      ASSERT_TRUE(player.place >= 1 && player.place <= kBots) << player.place;
      EXPECT_EQ(std::exchange(byPlace[player.place - 1], &player), nullptr) << player.place;
      prizes += player.prize;
    }
    const auto listed = tour().details().players;
    ASSERT_EQ(listed.size(), kBots);
    for (std::size_t i = 0; i < kBots; ++i) {
      ASSERT_NE(byPlace[i], nullptr);
      EXPECT_EQ(listed[i].player.name, byPlace[i]->account.name);
      EXPECT_TRUE(i == 0 || byPlace[i]->prize <= byPlace[i - 1]->prize);
    }
    const MultiTourneyInfo numbers = tour().numbers();
    const TourSettings& settings = tour().settings();
    const RealMoneyType paid =
        settings.buyIn * kBots + settings.rebuyPrice * numbers.rebuys + settings.addOnPrice * numbers.addOns;
    EXPECT_EQ(prizes, std::max(paid, settings.guaranteed));
    EXPECT_EQ(place_.bank().audit().difference(), kZeroMoney);
    EXPECT_EQ(place_.bank().audit().rake, settings.fee * kBots);
  }

  std::mt19937 random_;
  Place place_;
  std::vector<std::unique_ptr<Bot>> bots_;
  std::size_t ended_ = 0;
  std::uint64_t hands_ = 0;
  std::uint64_t handsSeen_ = 0;  // of the tables that are open
};

class ManyTournaments : public ::testing::TestWithParam<unsigned> {};

TEST_P(ManyTournaments, OfSixtyBotsEndAsTheyMust) {
  const auto count = std::max<std::uint64_t>(1, scaled(kTournamentsEach));
  for (unsigned i = 0; i < count && !HasFailure(); ++i) {
    const unsigned seed = GetParam() * kTournamentsEach + i;
    SCOPED_TRACE("seed " + std::to_string(seed));
    TournamentOfBots(seed).play();
  }
}

INSTANTIATE_TEST_SUITE_P(Groups, ManyTournaments, ::testing::Range(0u, kGroups));

}  // namespace
}  // namespace poker::holdem
