#include "Guest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace poker::holdem {
namespace {

using namespace std::chrono_literals;
using test::Guest;
using test::Place;
using test::quietTables;
using testing::ElementsAre;
using testing::IsEmpty;

RealMoneyType chips(std::int64_t units) { return RealMoneyType::fromUnits(units); }

/// A client's list of tables, made of whatever the server has told: every field of every table, as text.
class HeldList {
 public:
  std::uint32_t version = 0;
  std::map<std::uint32_t, std::string> tables;
  std::size_t changes = 0;

  void apply(const ServerUpdateInfo& update) {
    EXPECT_GE(update.version, version);
    for (const ServerTableEntry& line : update.tables) {
      EXPECT_LE(line.version, update.version);
      tables[line.gameID] = line.toDbText();
      ++changes;
    }
    for (const std::uint32_t gameID : update.removedTables) {
      changes += tables.erase(gameID);  // it may have come and gone meanwhile
    }
    version = update.version;
  }
  /// Takes in all that the guest has heard, and forgets that.
  void apply(Guest& guest) {
    guest.each<SrvServerInfo>([&](const SrvServerInfo& info) { apply(info.getInfo()); });
    guest.forget();
  }
};

TEST(TableList, GivesWhoeverHasAnyOfItsVersionsTheSameList) {
  std::uint32_t reserved = 5000;
  VersionNumbers numbers([&](std::uint32_t count) { return std::exchange(reserved, reserved + 3 * count); });
  TableList list(numbers);
  std::map<std::uint32_t, ServerTableEntry> truth;
  std::vector<HeldList> holders(5);
  std::mt19937_64 random(7);
  ServerUpdateInfo update;
  for (int round = 0; round < 5000; ++round) {
    const auto gameID = static_cast<std::uint32_t>(1 + drawBelow(random, 12));
    if (drawBelow(random, 10) == 0) {
      list.remove(gameID);
      truth.erase(gameID);
    } else {
      ServerTableEntry line;
      line.gameID = gameID;
      line.players = static_cast<std::uint16_t>(drawBelow(random, 3));
      list.set(line);
      truth[gameID] = line;
    }
    if (drawBelow(random, 3) != 0) continue;
    HeldList& holder = holders[drawBelow(random, holders.size())];
    list.changesSince(holder.version, update);
    holder.apply(update);
    ASSERT_EQ(holder.tables.size(), truth.size());
    for (auto& [id, line] : truth) {
      line.version = list.find(id)->version;
      ASSERT_EQ(holder.tables[id], line.toDbText());
    }
    list.changesSince(holder.version, update);
    ASSERT_EQ(update.tables.size() + update.removedTables.size(), 0u);
  }
  EXPECT_GT(list.version(), 5000 + VersionNumbers::kBlock);  // a second block was needed
  // Whoever has a version that is not of this list gets it all: one of the last run, one from nowhere.
  for (const std::uint32_t strange : {4999u, list.version() + 1, 0xFFFFFFFFu}) {
    list.changesSince(strange, update);
    EXPECT_EQ(update.tables.size(), truth.size());
    EXPECT_THAT(update.removedTables, IsEmpty());
  }
}

TEST(TableStatistics, AreThoseOfTheLastFiftyHands) {
  TableStatistics statistics;
  EXPECT_EQ(statistics.handsPerHour() + statistics.playersPerFlop(), 0u);
  const Clock::time_point start = Clock::now();
  const auto play = [&](int number, std::int64_t pot, unsigned sawFlop) {
    const Clock::time_point began = start + number * 60s;
    statistics.add({chips(pot), 8, sawFlop, began, began + 30s});
  };
  play(0, 100, 8);
  EXPECT_EQ(statistics.handsPerHour(), 120u);
  play(1, 50, 0);
  EXPECT_EQ(statistics.averagePot(), chips(75));
  EXPECT_EQ(statistics.playersPerFlop(), 50u);
  EXPECT_EQ(statistics.handsPerHour(), 80u);  // two in a minute and a half
  for (int i = 2; i < 102; ++i) play(i, 10, i % 2 == 0 ? 2 : 4);
  EXPECT_EQ(statistics.averagePot(), chips(10));
  EXPECT_EQ(statistics.playersPerFlop(), 37u);
  EXPECT_EQ(statistics.handsPerHour(), 60u);
}

// A server with many things going on: bots play, tables close, people come and go.
TEST(Lobby, AListMadeOfUpdatesIsTheListItself) {
  ServerSettings settings = quietTables({9, 9, 9, 9, 2, 6});
  for (std::size_t i = 0; i < 4; ++i) {
    settings.house.tables[i].handPause = 1ms;
    settings.house.tables[i].replyTime = 50ms;
  }
  settings.house.tables[2].mostHands = 30;
  settings.house.tables[3].mostHands = 60;
  settings.house.tables[5].password = "door";
  Place place(settings);
  std::vector<std::unique_ptr<Bot>> bots;
  for (unsigned i = 0; i < 8; ++i) {
    BotSettings bot = place.bot(i);
    bot.player.gameID = 1 + i / 2;
    bots.push_back(std::make_unique<Bot>(place.context, bot, [](PlayerEnd, std::string_view) {}));
    bots.back()->start();
  }
  std::vector<std::unique_ptr<Guest>> guests(6);
  Guest viewer(place, "Viewer"), fresh(place, "Fresh");
  ASSERT_TRUE(viewer.comesIn() && fresh.comesIn());

  HeldList held;
  std::mt19937_64 random(5);
  std::size_t compared = 0;
  std::set<std::uint32_t> versions;
  const auto deadline = Clock::now() + 30s;
  while ((held.changes < 600 || compared < 60 || place.server.house().tables()[3]->handsPlayed() < 60) &&
         Clock::now() < deadline) {
    const std::size_t i = drawBelow(random, guests.size());
    if (guests[i] == nullptr) {
      guests[i] = std::make_unique<Guest>(place, "Guest " + std::to_string(i));
    } else if (guests[i]->isLoggedOn) {
      const auto gameID = static_cast<std::uint32_t>(1 + drawBelow(random, 5));
      switch (drawBelow(random, 6)) {
        case 0:
          guests[i].reset();
          break;
        case 1:
          guests[i]->enter(gameID);
          break;
        case 2:
          guests[i]->sitDown(static_cast<unsigned>(drawBelow(random, 9)), 100);
          break;
        case 3:
          guests[i]->send<ClLeaveSeat>();
          break;
        default:
          guests[i]->send<ClAddToWaitList>(gameID);
      }
    }
    place.runUntil([] { return false; }, std::chrono::milliseconds(drawBelow(random, 12)));
    held.apply(viewer);
    // Now and then both ask: the one for what is new, the other one for everything. Nothing must have happened between.
    viewer.send<ClGetServerInfo>(kRingGames, kRingGames, held.version);
    fresh.forget();
    fresh.send<ClGetServerInfo>(kRingGames, kNoList, 0u);
    ASSERT_TRUE(viewer.isAnswered() && fresh.isAnswered());
    HeldList whole;
    fresh.each<SrvServerInfo>([&](const SrvServerInfo& info) {
      if (whole.version == 0) whole.apply(info.getInfo());
    });
    viewer.each<SrvServerInfo>([&](const SrvServerInfo& info) {
      held.apply(info.getInfo());
      versions.insert(held.version);
      if (held.version != whole.version) return;
      ++compared;
      ASSERT_EQ(held.tables, whole.tables);
    });
    viewer.forget();
    fresh.send<ClGetServerInfo>(kNoList, kRingGames, 0u);
    ASSERT_TRUE(fresh.isAnswered());
  }
  EXPECT_GE(held.changes, 600u);
  EXPECT_GE(compared, 60u);
  EXPECT_GE(versions.size(), 60u);
  EXPECT_EQ(held.tables.count(3) + held.tables.count(4), 0u);  // these have closed
  EXPECT_EQ(held.tables.size(), 4u);
  EXPECT_EQ(place.bank().audit().difference(), kZeroMoney);
}

TEST(Lobby, TellsEachSecondWhatHasChangedAndIsSilentOtherwise) {
  ServerSettings settings = quietTables({9, 4});
  settings.house.news = "The bar is open.";
  settings.announcement = "Back soon.";
  Place place(settings);
  Guest viewer(place, "Viewer"), ann(place, "Ann"), ben(place, "Ben");
  ASSERT_TRUE(viewer.comesIn() && ann.comesIn() && ben.comesIn());
  viewer.send<ClGetServerInfo>(kRingGames, kNoList, 0u);
  ASSERT_TRUE(viewer.isAnswered());
  HeldList list;
  ASSERT_EQ(viewer.count<SrvServerInfo>(), 1u);
  EXPECT_EQ(viewer.heard<SrvServerInfo>()->getInfo().tables.size(), 2u);
  EXPECT_STREQ(viewer.heard<SrvNews>()->news(SrvNewsType::Headlines), "The bar is open.");
  const auto counter = [&](std::uint8_t key) {
    const auto& counters = viewer.heard<SrvServerCountersInfo>()->counters();
    return counters.contains(key) ? counters.find(key)->second : 99u;
  };
  EXPECT_EQ(counter(kPlayersLoggedOn), 3u);
  EXPECT_EQ(counter(kPlayersSeated), 0u);
  EXPECT_EQ(counter(kTables), 2u);
  list.apply(viewer);

  // Many changes make one message; a player alone at a table is told of.
  ann.enter(1);
  ann.sitDown(3, 100);
  ben.enter(2);
  ASSERT_TRUE(ann.hears<SrvSitOk>() != nullptr);
  ann.send<ClMoreMoney>(chips(10));
  ASSERT_TRUE(viewer.waitFor([&] { return viewer.count<SrvOneUser>() == 1; }));
  EXPECT_EQ(viewer.heard<SrvOneUser>()->gameID(), 1u);
  EXPECT_EQ(viewer.count<SrvServerInfo>(), 1u);
  EXPECT_EQ(viewer.heard<SrvServerInfo>()->getInfo().tables.size(), 2u);
  EXPECT_EQ(counter(kPlayersSeated), 1u);
  EXPECT_EQ(viewer.count<SrvNews>(), 0u);
  list.apply(viewer);
  place.runUntil([] { return false; }, 1300ms);
  EXPECT_EQ(viewer.count<SrvServerInfo>() + viewer.count<SrvServerCountersInfo>() + viewer.count<SrvNews>(), 0u);

  // However soon the next change comes, it is told a second after the last one.
  const auto start = Clock::now();
  for (unsigned told = 1; told <= 3; ++told) {
    ben.enter((told + 1) % 2 + 1);
    ASSERT_TRUE(viewer.waitFor([&] { return viewer.count<SrvServerInfo>() == told; }));
  }
  EXPECT_GE(Clock::now() - start, 2s);
  // The news of maintenance comes by itself; who looks away hears nothing more.
  place.server.announceMaintenance();
  ASSERT_TRUE(viewer.hears<SrvNews>() != nullptr);
  EXPECT_STREQ(viewer.heard<SrvNews>()->news(SrvNewsType::Maintenance), "Back soon.");
  viewer.send<ClGetServerInfo>(kNoList, kRingGames, 0u);
  ASSERT_TRUE(viewer.isAnswered());
  viewer.forget();
  ben.sitDown(0, 100);
  place.runUntil([] { return false; }, 1300ms);
  EXPECT_EQ(viewer.count<SrvServerInfo>() + viewer.count<SrvServerCountersInfo>(), 0u);
}

TEST(Lobby, ShowsATableAsItIs) {
  ServerSettings settings = quietTables({3});
  settings.house.tables[0].handPause = 1ms;
  settings.house.tables[0].replyTime = 60s;
  settings.house.tables[0].stakes.limit = LimitType::FixedLimit;
  settings.house.tables[0].startWith = 3;
  Place place(settings);
  Guest ann(place, "Ann"), ben(place, "Ben"), cy(place, "Cy"), dee(place, "Dee"), viewer(place, "Viewer");
  for (Guest* guest : {&ann, &ben, &cy, &dee, &viewer}) ASSERT_TRUE(guest->comesIn());
  for (Guest* guest : {&ann, &ben, &dee}) guest->enter(1);
  ann.sitDown(2, 100);
  ASSERT_TRUE(ann.hears<SrvSitOk>() != nullptr);
  ben.sitDown(0, 50);
  ASSERT_TRUE(ben.hears<SrvSitOk>() != nullptr && dee.isAnswered());
  viewer.send<ClGetGameInfo>(1u, 0u, 0u);
  const SrvGameInfo* told = viewer.hears<SrvGameInfo>();
  ASSERT_TRUE(told != nullptr);
  const TableInfoDetailed& info = told->getDetailedInfo();
  EXPECT_EQ(info.observers, 1u);
  EXPECT_EQ(info.highBet, chips(4));
  ASSERT_EQ(info.players.size(), 2u);
  EXPECT_EQ(info.players[0].displayName, "Ben");
  EXPECT_EQ(info.players[0].money, chips(50));
  EXPECT_EQ(info.players[1].seatID, SeatID(2));
  // The client's version is the newest, and a table that is not there is passed over.
  const std::uint32_t version = info.version;
  viewer.forget();
  viewer.send<ClGetGameInfo>(1u, 1u, version);
  viewer.send<ClGetGameInfo>(7u, 1u, 0u);
  ASSERT_TRUE(viewer.isAnswered());
  EXPECT_EQ(viewer.count<SrvGameInfo>(), 0u);

  // The seat is held for Cy, whose invitation runs on; then Dee waits. The viewer hears of it by itself.
  cy.send<ClAddToWaitList>(1u);
  const SrvWaitList* invitation = cy.hears<SrvWaitList>();
  ASSERT_TRUE(invitation != nullptr);
  dee.send<ClAddToWaitList>(1u);
  ASSERT_TRUE(viewer.waitFor([&] {
    const SrvGameInfo* newer = viewer.heard<SrvGameInfo>();
    return newer != nullptr && newer->getDetailedInfo().waitList.size() == 1;
  }));
  {
    const TableInfoDetailed& now = viewer.heard<SrvGameInfo>()->getDetailedInfo();
    EXPECT_GT(now.version, version);
    EXPECT_EQ(now.waitList[0], "Dee");
    ASSERT_EQ(now.players.size(), 3u);
    EXPECT_EQ(now.players[1].state, UserState::Reserved);
    EXPECT_EQ(now.players[1].displayName, "Cy");
  }
  // The hand begins with three: stacks are told with what lies before the players.
  cy.send<ClAcceptInvite>(1u, invitation->reserveID(), chips(60));
  ASSERT_TRUE(viewer.waitFor([&] { return viewer.heard<SrvGameInfo>()->getDetailedInfo().handNumber != 0; }));
  RealMoneyType sum;
  for (const TablePlayerInfo& player : viewer.heard<SrvGameInfo>()->getDetailedInfo().players) {
    EXPECT_EQ(player.state, UserState::Playing);
    sum += player.money;
  }
  EXPECT_EQ(sum, chips(210));
  viewer.send<ClGetServerInfo>(kRingGames, kNoList, 0u);
  ASSERT_TRUE(viewer.hears<SrvServerInfo>() != nullptr);
  const ServerTableEntry line = viewer.heard<SrvServerInfo>()->getInfo().tables[0];
  EXPECT_EQ(line.handNumber, viewer.heard<SrvGameInfo>()->getDetailedInfo().handNumber);
  EXPECT_EQ(line.waitListLength, 1u);
  EXPECT_EQ(line.lowBet, chips(2));
}

TEST(Lobby, KeepsTheStacksOfAPrivateTableBehindItsPassword) {
  ServerSettings settings = quietTables({2});
  settings.house.tables[0].password = "door";
  Place place(settings);
  Guest ann(place, "Ann"), viewer(place, "Viewer");
  ASSERT_TRUE(ann.comesIn() && viewer.comesIn());
  ann.enter(1);
  ASSERT_TRUE(ann.hears<SrvRequestPass>() != nullptr);
  ann.send<ClSendUserPass>("door");
  ann.sitDown(1, 100);
  ASSERT_TRUE(ann.hears<SrvSitOk>() != nullptr);
  viewer.send<ClGetServerInfo>(kRingGames, kNoList, 0u);
  viewer.send<ClGetGameInfo>(1u, 0u, 0u);
  ASSERT_TRUE(viewer.isAnswered());
  EXPECT_EQ(viewer.heard<SrvServerInfo>()->getInfo().tables[0].flags, ServerTableEntry::PasswordProtected);
  const TableInfoDetailed& info = viewer.heard<SrvGameInfo>()->getDetailedInfo();
  EXPECT_TRUE(info.passwordProtected);
  ASSERT_EQ(info.players.size(), 1u);
  EXPECT_EQ(info.players[0].displayName, "Ann");
  EXPECT_EQ(info.players[0].money, kZeroMoney);
}

TEST(Lobby, VersionsGoOnWhenTheServerIsStartedAnew) {
  const std::string file = testing::TempDir() + "lobby-versions.db";
  std::remove(file.c_str());
  ServerSettings settings = quietTables({9, 9});
  settings.house.bank.file = file;
  std::uint32_t list = 0, details = 0;
  for (int run = 0; run < 3; ++run) {
    Place place(settings);
    Guest viewer(place, "Viewer");
    ASSERT_TRUE(viewer.comesIn());
    viewer.send<ClGetServerInfo>(kRingGames, kNoList, list);
    viewer.send<ClGetGameInfo>(1u, 0u, details);
    ASSERT_TRUE(viewer.isAnswered());
    // What the client has from before is not known here: it gets all of it.
    const ServerUpdateInfo& update = viewer.heard<SrvServerInfo>()->getInfo();
    EXPECT_EQ(update.tables.size(), 2u);
    ASSERT_EQ(viewer.count<SrvGameInfo>(), 1u);
    EXPECT_GT(update.version, list);
    EXPECT_GT(viewer.heard<SrvGameInfo>()->getDetailedInfo().version, details);
    viewer.enter(1);
    viewer.send<ClGetServerInfo>(kRingGames, kRingGames, update.version);
    viewer.send<ClGetGameInfo>(1u, 1u, 0u);
    ASSERT_TRUE(viewer.isAnswered());
    EXPECT_EQ(viewer.heard<SrvServerInfo>()->getInfo().tables.size(), 1u);
    list = viewer.heard<SrvServerInfo>()->getInfo().version;
    details = viewer.heard<SrvGameInfo>()->getDetailedInfo().version;
  }
  std::remove(file.c_str());
}

}  // namespace
}  // namespace poker::holdem
