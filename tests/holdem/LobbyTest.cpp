#include "Guest.h"
#include "TempFolder.h"

#include <gtest/gtest.h>

#include <map>
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

RealMoneyType chips(std::int64_t units) { return RealMoneyType::fromUnits(units); }

/// A client's list of tables, made of whatever the server has told: every field of every table, as text.
class HeldList {
 public:
  std::uint32_t version = 0;
  std::map<std::uint32_t, std::string> tables;

  void apply(const ServerUpdateInfo& update) {
    EXPECT_GE(update.version, version);
    for (const ServerTableEntry& line : update.tables) {
      EXPECT_LE(line.version, update.version);
      tables[line.gameID] = line.toDbText();
    }
    for (const std::uint32_t gameID : update.removedTables) tables.erase(gameID);
    version = update.version;
  }
  /// Takes in all that the guest has heard, and forgets that.
  void apply(Guest& guest) {
    guest.each<SrvServerInfo>([&](const SrvServerInfo& info) { apply(info.getInfo()); });
    guest.forget();
  }
};

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

/// Sees that no seat stays free for whom somebody waits, that nobody sits or is held a seat twice, and counts.
class Judge {
 public:
  std::size_t held = 0;

  void look(Place& place) {
    std::set<std::string> names;
    held = 0;
    for (const auto& table : place.server.house().tables()) {
      const std::uint32_t gameID = table->settings().gameID;
      std::size_t seats = 0;
      table->forEachSeat(
          [&](const SeatID&, const std::string& name, const RealMoneyType&, const RealMoneyType&, UserState state) {
            EXPECT_TRUE(names.insert(name).second) << name << " has two seats";
            held += state == UserState::Reserved ? 1 : 0;
            ++seats;
          });
      EXPECT_LE(seats, table->settings().seats);
      EXPECT_TRUE(!table->freeSeat().isValid() || place.server.house().waitLists().length(gameID) == 0);
      place.server.house().waitLists().forEachWaiting(
          gameID, [&](const std::string& name) { EXPECT_FALSE(names.contains(name)) << name << " sits and waits"; });
    }
  }
};

// Guests come and go, sit, wait and are invited; bots play until their table closes; and the server is started anew.
TEST(Lobby, TellsTheListItselfAndGivesEachSeatToOneWhateverClientsDo) {
  const test::TempFolder folder;
  ServerSettings settings = quietTables({2, 3, 2, 9});
  settings.house.bank.file = folder.file("bank");
  settings.house.inviteTime = 60ms;
  for (std::size_t i = 0; i < 3; ++i) {
    settings.house.tables[i].keepSeat = 100ms;
    settings.house.tables[i].replyTime = 10ms;
  }
  for (TableSettings& table : settings.house.tables) table.handPause = 5ms;
  settings.house.tables[3].mostHands = 60;
  std::mt19937_64 random(23);
  std::set<std::string> invitations;
  std::size_t seated = 0, rounds = 0, compared = 0;
  for (int run = 0; run < 2; ++run) {
    Place place(settings);
    Judge judge;
    judge.look(place);
    EXPECT_EQ(judge.held, 0u);  // invitations end with the server, seats do not
    std::vector<std::unique_ptr<Bot>> bots;
    for (unsigned i = 0; i < 3; ++i) {
      BotSettings bot = place.bot(i);
      bot.player.gameID = 4;
      bots.push_back(std::make_unique<Bot>(place.context, bot, [](PlayerEnd, std::string_view) {}));
      bots.back()->start();
    }
    Guest viewer(place, "Viewer"), fresh(place, "Fresh");
    ASSERT_TRUE(viewer.comesIn() && fresh.comesIn());
    HeldList held;
    // Both ask: the one for what is new, the other one for everything. Nothing must have happened between.
    const auto compare = [&] {
      held.apply(viewer);
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
        if (held.version != whole.version) return;
        ++compared;
        ASSERT_EQ(held.tables, whole.tables);
      });
      viewer.forget();
      fresh.send<ClGetServerInfo>(kNoList, kRingGames, 0u);
      ASSERT_TRUE(fresh.isAnswered());
    };
    std::vector<std::unique_ptr<Guest>> guests(12);
    const std::size_t enough = invitations.size() + 150;
    const auto deadline = Clock::now() + 30s;
    while ((invitations.size() < enough || held.tables.contains(4)) && Clock::now() < deadline) {
      const std::size_t i = drawBelow(random, guests.size());
      if (guests[i] == nullptr) {
        // Now and then on a second connection of a player who is there.
        guests[i] = std::make_unique<Guest>(place, "Guest " + std::to_string(drawBelow(random, 10)));
      } else if (guests[i]->isClosed) {
        guests[i].reset();
      } else if (guests[i]->isLoggedOn) {
        Guest& guest = *guests[i];
        const auto gameID = static_cast<std::uint32_t>(1 + drawBelow(random, 3));
        const SrvWaitList* invitation = guest.heard<SrvWaitList>();
        switch (drawBelow(random, 12)) {
          case 0:
            guest.close();
            break;
          case 1:
            guest.enter(gameID);
            guest.sitDown(static_cast<unsigned>(drawBelow(random, 3)), 100);
            break;
          case 2:
          case 3:
            guest.send<ClLeaveSeat>();
            break;
          case 4:
            guest.send<ClAddGlobalWaitList>(std::uint16_t{1}, chips(0), chips(0),
                                            static_cast<int>(drawBelow(random, 2)), 0, false);
            break;
          case 5:
            guest.send<ClRemoveFromWaitList>(gameID - 1);
            break;
          case 6:
            if (invitation != nullptr) guest.send<ClRejectInvite>(invitation->gameID(), invitation->reserveID());
            break;
          case 7:
          case 8:
            if (invitation == nullptr) break;
            guest.send<ClAcceptInvite>(invitation->gameID(), invitation->reserveID(),
                                       chips(drawBelow(random, 3) == 0 ? 1 : 100));
            break;
          default:
            guest.send<ClAddToWaitList>(gameID);
        }
      }
      place.runUntil([] { return false; }, std::chrono::milliseconds(drawBelow(random, 4)));
      judge.look(place);
      for (const auto& guest : guests) {
        if (guest == nullptr) continue;
        guest->each<SrvWaitList>([&](const SrvWaitList& told) { invitations.insert(told.reserveID()); });
        if (guest->heard<SrvSitOk>() == nullptr) continue;
        ++seated;
        guest->forget();
      }
      if (++rounds % 10 == 0) compare();
    }
    EXPECT_EQ(held.tables.size(), 3u);  // the fourth one has closed
    EXPECT_EQ(place.bank().audit().difference(), kZeroMoney);
    for (auto& guest : guests) guest.reset();
    // All of them are gone, and nothing is left of what they waited for.
    ASSERT_TRUE(place.runUntil([&] {
      judge.look(place);
      const WaitLists& lists = place.server.house().waitLists();
      return judge.held + lists.length(0) + lists.length(1) + lists.length(2) + lists.length(3) == 0;
    }));
  }
  EXPECT_GE(invitations.size(), 100u);
  EXPECT_GE(seated, 30u);
  EXPECT_GE(compared, 60u);
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
  const test::TempFolder folder;
  ServerSettings settings = quietTables({9, 9});
  settings.house.bank.file = folder.file("bank");
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
}

}  // namespace
}  // namespace poker::holdem
