// Whole tournaments of sixty bots over TCP, of many kinds: what must hold after each hand, and at the end.

#include "Place.h"

#include <examples/holdem/client/tournament/TourPicture.h>
#include <examples/holdem/server/tournament/BlindLevels.h>
#include <gtest/gtest.h>
#include <hostkit/Decode.h>

#include <algorithm>
#include <memory>
#include <random>
#include <set>
#include <string>
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

/// The server's own picture, as somebody gets it who asks for all of it now.
TourPicture pictureOf(const Tournament& tournament) {
  TourPicture picture(tournament.id());
  Outbox outbox([&](const ConnectionID&, std::span<const std::uint8_t> frame) {
    DecodeResult decoded = decodeCommand(frame.subspan(4), DecodePolicy::of(Side::Client));
    if (const auto* whole = dynamic_cast<const SrvMultiTourInitialize*>(decoded.command.get())) picture.apply(*whole);
  });
  outbox.run([&] { tournament.board().tellAll(outbox, ConnectionID(1)); });
  return picture;
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
    const std::uint64_t stopAt = 10 + random_() % 50;  // hands
    bool hasStopped = false;
    const auto isOver = [&] {
      checkTables();
      if (hands_ < stopAt || hasStopped || tour().status() != TOUR_NAMES::TourStatus::Started) return tour().isOver();
      return true;
    };
    while (!tour().isOver()) {
      ASSERT_TRUE(place_.runUntil(isOver, std::chrono::seconds(120))) << "after " << hands_ << " hands";
      if (tour().isOver() || hasStopped) continue;
      hasStopped = true;
      comparePictures();
      breakSomeConnections();
    }
    EXPECT_TRUE(hasStopped) << "no pictures were compared in " << hands_ << " hands";
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

  /// While nothing happens, whoever asks for what has changed has the server's picture.
  void comparePictures() {
    place_.server.toggleTournaments();
    const auto isStill = [&] {
      bool idle = true;
      tour().forEachTable([&](TourTable& table) { idle = idle && table.isIdle(); });
      return idle || tour().isOver();
    };
    ASSERT_TRUE(place_.runUntil(isStill));
    const auto asks = [&](const Bot& bot) {
      const Tournament::Player* player = tour().player(accountOf(bot));
      return player != nullptr && player->place == 0 && bot.client().isAtTable() && bot.tourPicture().isWhole();
    };
    std::vector<Bot*> asking;
    for (const auto& bot : bots_) {
      if (asks(*bot)) asking.push_back(bot.get());
    }
    EXPECT_FALSE(asking.empty() && !tour().isOver());
    // Who lost everything in the last hand may still buy chips: whoever asks again then has that, too.
    TourBoard::Versions asked;
    const auto areSame = [&] {
      if (tour().board().versions() != asked) {
        asked = tour().board().versions();
        for (Bot* bot : asking) bot->tourPicture().askForChanges(bot->client());
      }
      const TourPicture own = pictureOf(tour());
      return std::all_of(asking.begin(), asking.end(), [&](const Bot* bot) { return bot->tourPicture() == own; });
    };
    EXPECT_TRUE(place_.runUntil(areSame, std::chrono::seconds(10))) << "after " << hands_ << " hands";
    place_.server.toggleTournaments();
  }

  /// Who comes back is at its table again.
  void breakSomeConnections() {
    for (const auto& bot : bots_) {
      if (random_() % 5 == 0) bot->client().breakConnection();
    }
  }

  AccountID accountOf(const Bot& bot) {
    for (const auto& [account, player] : tour().players()) {
      if (player.account.name == bot.client().settings().name) return account;
    }
    return {};
  }

  void checkResults() {
    std::set<std::uint32_t> places;
    RealMoneyType prizes;
    for (const auto& [account, player] : tour().players()) {
      EXPECT_TRUE(places.insert(player.place).second) << player.place;
      prizes += player.prize;
    }
    ASSERT_EQ(places.size(), kBots);
    EXPECT_EQ(*places.begin(), 1u);
    EXPECT_EQ(*places.rbegin(), kBots);
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
