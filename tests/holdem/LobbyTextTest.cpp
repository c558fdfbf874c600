#include <examples/holdem/client/lobby/LobbyPicture.h>
#include <examples/holdem/client/lobby/LobbyText.h>
#include <examples/holdem/client/terminal/Text.h>
#include <examples/holdem/client/tournament/TourLobbyText.h>
#include <examples/holdem/shared/Protocol.h>
#include <hostkit/CommandHandle.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace poker::holdem {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

ServerTableEntry table(std::uint32_t gameID, const std::string& name, std::uint16_t players = 0) {
  ServerTableEntry entry;
  entry.gameID = gameID;
  entry.tableName = name;
  entry.gameType = GameType::TexasHoldem;
  entry.limitType = LimitType::FixedLimit;
  entry.maxSeats = 6;
  entry.lowBet = RealMoneyType::fromUnits(2);
  entry.highBet = RealMoneyType::fromUnits(4);
  entry.players = players;
  return entry;
}

CommandHandle<SrvServerInfo> update(std::uint32_t version, const SteadyVector<ServerTableEntry>& tables,
                                    std::vector<std::uint32_t> removed = {}) {
  ServerUpdateInfo info;
  info.tables = tables;
  info.removedTables = std::move(removed);
  info.version = version;
  return make<SrvServerInfo>(info);
}

std::vector<std::uint32_t> numbers(const LobbyPicture& picture) {
  std::vector<std::uint32_t> all;
  for (const auto& [gameID, entry] : picture.tables()) all.push_back(gameID);
  return all;
}

void expectPrintable(const std::vector<std::string>& lines) {
  for (const std::string& line : lines) {
    // Our own texts have no more than the middle dot beside printable ASCII.
    std::string rest = line;
    for (std::size_t at; (at = rest.find("·")) != std::string::npos;) rest.erase(at, 2);
    EXPECT_TRUE(std::all_of(rest.begin(), rest.end(), [](char c) { return c >= 0x20 && c <= 0x7E; })) << line;
  }
}

TEST(LobbyPicture, UpdatesChangeAddAndRemoveTablesAndOldOnesDoNothing) {
  LobbyPicture picture;
  picture.apply(*update(7, {table(3, "Three"), table(1, "One"), table(70'000, "Far")}));
  EXPECT_EQ(numbers(picture), (std::vector<std::uint32_t>{1, 3, 70'000}));
  picture.apply(*update(9, {table(1, "One", 5), table(2, "Two")}, {3, 4, 70'000}));
  EXPECT_EQ(numbers(picture), (std::vector<std::uint32_t>{1, 2}));
  EXPECT_EQ(picture.table(1)->players, 5);
  EXPECT_EQ(picture.table(3), nullptr);
  // A number that is free again is given to another table, in one update.
  picture.apply(*update(10, {table(2, "New")}, {2}));
  ASSERT_NE(picture.table(2), nullptr);
  EXPECT_EQ(picture.table(2)->tableName, "New");
  picture.apply(*update(8, {table(9, "Late")}, {1}));
  EXPECT_EQ(numbers(picture), (std::vector<std::uint32_t>{1, 2}));
  EXPECT_EQ(picture.version(), 10u);
}

TEST(LobbyPicture, CountersAndNewsAreKeptUntilTheyChange) {
  LobbyPicture picture;
  const auto counters = make<SrvServerCountersInfo>();
  counters->counters().set(kPlayersLoggedOn, 4u);
  counters->counters().set(kTables, 2u);
  picture.apply(*counters);
  counters->init();
  counters->counters().set(kTables, 3u);
  picture.apply(*counters);
  const auto news = make<SrvNews>();
  news->addMsg(SrvNewsType::Welcome, "Hello");
  news->addMsg(SrvNewsType::Maintenance, "At noon");
  picture.apply(*news);
  news->init();
  news->addMsg(SrvNewsType::Maintenance, "");
  picture.apply(*news);

  const std::vector<std::string> lines = lobbyText(picture);
  EXPECT_THAT(lines, Contains("  4 logged on · 3 tables"));
  EXPECT_THAT(lines, Contains(HasSubstr("Hello")));
  EXPECT_THAT(lines, Not(Contains(HasSubstr("noon"))));
}

TEST(LobbyText, ColumnsStandBelowEachOtherInEightyOfTheTerminal) {
  LobbyPicture picture;
  ServerTableEntry river = table(12, "River", 6);
  river.waitListLength = 2;
  river.averagePot = 2350;
  river.playersPerFlop = 31;
  river.handsPerHour = 260;
  river.flags = ServerTableEntry::PasswordProtected | ServerTableEntry::Closing;
  picture.apply(*update(1, {table(1, "A table with a longer\x9B\x9B name"), river}));
  const std::vector<std::string> lines = lobbyText(picture);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_THAT(lines[2], testing::StartsWith("   12  River  "));
  EXPECT_THAT(lines[2], testing::EndsWith("  FL hold'em     2/4    6/6     2   24   31%      260  closing"));
  EXPECT_EQ(lines[0].find("hands/h") + 7, lines[2].find("260") + 3);
  EXPECT_EQ(lines[1].find("FL hold'em"), lines[2].find("FL hold'em"));
  for (const std::string& line : lines) EXPECT_LE(columnsOf(line), 80u) << line;
  // No half of an escape is left.
  EXPECT_EQ(shortened("ab\\x9B\\x9Bcd", 9), "ab\\x9B..");
  EXPECT_EQ(shortened("ab\\\"cdefg", 5), "ab..");
  EXPECT_EQ(shortened("abcde", 5), "abcde");
}

TEST(LobbyText, WhoFollowsATableIsToldWhoHasGone) {
  const auto sitting = [](std::uint8_t seat, const std::string& name, UserState state) {
    TablePlayerInfo player;
    player.seatID = seat;
    player.displayName = name;
    player.state = state;
    return player;
  };
  TableInfoDetailed before;
  before.players = {sitting(0, "Ann", UserState::Playing), sitting(1, "Ben", UserState::Playing),
                    sitting(2, "Cay", UserState::Reserved)};
  before.waitList = {"Dan", "Eve"};
  TableInfoDetailed now;
  now.players = {sitting(1, "Ben", UserState::Folded), sitting(2, "Dan", UserState::Reserved)};
  now.waitList = {"Eve"};
  EXPECT_THAT(departures(before, now),
              ElementsAre("Ann has left seat 0.", "Seat 2 is held for Cay no more.", "Dan waits no more."));
}

TEST(LobbyText, NothingThatOthersWroteReachesTheTerminalAsItIs) {
  const std::string hostile = "\x1B[2J\r\nEvil\x07\x9B\xFF\"\\";
  LobbyPicture picture;
  ServerTableEntry odd = table(1, hostile);
  odd.gameType = static_cast<GameType>(999);
  odd.limitType = static_cast<LimitType>(77);
  odd.flags = 0xFF;
  picture.apply(*update(1, {odd, table(2, std::string(50'000, 'x'))}));
  const auto news = make<SrvNews>();
  news->addMsg(SrvNewsType::Headlines, (hostile + "\nmore").c_str());
  picture.apply(*news);
  const std::vector<std::string> lines = lobbyText(picture);
  expectPrintable(lines);
  for (const std::string& line : lines) EXPECT_LT(columnsOf(line), 200u);
  EXPECT_THAT(lines, Contains(testing::EndsWith("more")));

  TableInfoDetailed details;
  details.tableName = hostile;
  TablePlayerInfo player;
  player.displayName = hostile;
  player.state = static_cast<UserState>(200);
  details.players.push_back(player);
  for (int i = 0; i < 30; ++i) details.waitList.push_back(hostile);
  expectPrintable(detailsText(details));
  EXPECT_THAT(detailsText(details).back(), testing::EndsWith(" and 10 more"));

  // One line, so that a program reads objects line by line.
  for (const std::string& json : {lobbyJson(picture), detailsJson(details)}) {
    expectPrintable({json});
    EXPECT_TRUE(json.starts_with('{') && json.ends_with('}'));
  }
}

TEST(TourLobbyText, ShowsNothingOfOthersThatATerminalWouldObey) {
  const std::string hostile = "\x1B[2J\x9B\r\n\"\xFF";
  TourListEntry entry;
  entry.tournamentID = 3;
  entry.name = entry.description = entry.prizes = hostile;
  entry.status = static_cast<TOUR_NAMES::TourStatus>(200);
  TournamentsInfo info;
  info.tournaments = {entry};
  TourListPicture list(info.type);
  list.apply(*make<SrvTournamentsInfo>(info));

  MultiTourTablesInfo tables;
  tables.tables.emplace_back().name = hostile;
  MultiTourPlayersInfo players;
  players.players.emplace_back().player.name = hostile;
  MultiTourTextInfo text;
  text.texts = {{MultiTourText::Title, hostile}, {MultiTourText::Blinds, hostile}};
  PrizeSchemeInfoMap prizes;
  PrizeSchemeInfoRow row;
  row.type = static_cast<PrizeType>(99);
  prizes.add(row);
  PrizeFundInfo fund;
  fund.summary = hostile;
  fund.texts.set(static_cast<PrizeFundText>(250), hostile);
  TourPicture picture(3);
  picture.apply(*make<SrvMultiTourInitialize>(tables, players, text, 3u, prizes, fund, 1u, 1u));
  MultiStartInfo start;
  start.starts = start.registrationEnds = hostile;
  picture.apply(*make<SrvMultiTourDetailedInfo>(MultiTourMoneyInfo(), start, MultiTourneyInfo(), 3u, 5u, true));
  TournamentDetailedInfo details;
  details.description = hostile;
  details.players.emplace_back().player.name = hostile;

  std::vector<std::string> lines = tourListText({&list});
  for (const bool finished : {false, true}) {
    details.finished = finished;
    for (const std::string& line : tourText(entry, picture, details, "cost: free")) lines.push_back(line);
  }
  EXPECT_GT(lines.size(), 30u);
  expectPrintable(lines);
}

TEST(TourLobbyText, TellsWhatItCosts) {
  const auto units = [](std::int64_t cash, std::int64_t tourMoney = 0) {
    return TourMoneyType(RealMoneyType::fromUnits(cash), RealMoneyType::fromUnits(tourMoney));
  };
  EXPECT_EQ(costText(*make<SrvTourMoney>(units(50), units(5), units(55), 3u)), "cost: buy-in 50 · fee 5 · total 55");
  EXPECT_EQ(costText(*make<SrvTourMoney>(units(50, 40), units(5), units(55), 3u)),
            "cost: buy-in 50 (or 40 in tournament money) · fee 5 · total 55");
  EXPECT_EQ(costText(*make<SrvTourMoney>(units(0), units(0), units(0), 3u)), "cost: free");
}

TEST(TourLobbyText, GivesNoPlacesInOneThatWasCalledOff) {
  const auto linesOf = [](const std::string& news, bool hasPrizes) {
    MultiTourTextInfo text;
    text.texts = {{MultiTourText::News, news}};
    PrizeSchemeInfoMap prizes;
    if (hasPrizes) prizes.add(PrizeSchemeInfoRow());
    TourPicture picture(3);
    picture.apply(*make<SrvMultiTourInitialize>(MultiTourTablesInfo(), MultiTourPlayersInfo(), text, 3u, prizes,
                                                PrizeFundInfo(), 1u, 1u));
    TourListEntry entry;
    entry.status = TOUR_NAMES::TourStatus::Finished;
    TournamentDetailedInfo details;
    details.finished = true;
    details.players.emplace_back().player.name = "Ann";
    std::string lines;
    for (const std::string& line : tourText(entry, picture, details, "")) lines += line + '\n';
    return lines;
  };
  EXPECT_THAT(linesOf("Called off: The house closes.", false), AllOf(HasSubstr("called off"), Not(HasSubstr("Ann"))));
  EXPECT_THAT(linesOf("Ann has won.", true), AllOf(HasSubstr("finished"), HasSubstr("Ann ")));
  EXPECT_THAT(linesOf("Called off was the rain.", true), HasSubstr("Ann ")) << "one that was played has prizes";
}

TEST(TourLobbyText, TellsWhatIsNewAndOnlyThat) {
  MultiTourneyInfo before;
  before.registeredPlayers = before.playersLeft = 12;
  before.tables = 2;
  MultiTourneyInfo now = before;
  EXPECT_THAT(changesText(before, now), ElementsAre());
  now.playersLeft = 9;
  now.tables = 1;
  now.rebuys = 1;
  EXPECT_THAT(changesText(before, now), ElementsAre("9 players left at 1 table", "1 re-buy"));

  const auto players = [](std::vector<std::pair<std::string, std::uint32_t>> tables) {
    TourPicture::Players all;
    for (const auto& [name, table] : tables) all[name].tableID = table;
    return all;
  };
  EXPECT_THAT(playersText({}, players({{"Ann", 0}, {"Ben", 0}}), false), ElementsAre("Ann, Ben register"));
  EXPECT_THAT(playersText(players({{"Ann", 0}, {"Ben", 0}}), players({{"Ben", 0}}), false),
              ElementsAre("Ann withdraws"));
  const TourPicture::Players drawn = players({{"Ann", 1}, {"Ben", 2}, {"Cy", 1}, {"Dan", 2}});
  EXPECT_THAT(playersText(players({{"Ann", 0}, {"Ben", 0}, {"Cy", 0}, {"Dan", 0}}), drawn, true),
              ElementsAre("table 1: Ann, Cy", "table 2: Ben, Dan"));
  EXPECT_THAT(playersText(drawn, drawn, true), ElementsAre());
  EXPECT_THAT(playersText(drawn, players({{"Ann", 1}, {"Ben", 1}, {"Cy", 1}}), true),
              ElementsAre("Dan is out: place 4", "to table 1: Ben"));
  EXPECT_THAT(playersText(drawn, players({{"Ann", 1}, {"Ben", 2}}), true),
              ElementsAre("Cy is out: place 3-4", "Dan is out: place 3-4"));

  const auto level = [](bool begins, std::int32_t units) {
    return levelText(*make<SrvLevelSwitch>(RealMoneyType::fromUnits(30), RealMoneyType::fromUnits(60), std::int16_t{3},
                                           units, TOUR_NAMES::SwitchType::ByHands, begins),
                     LimitType::FixedLimit);
  };
  EXPECT_EQ(level(true, 10), "level 3: bets 30/60, the next one in 10 hands");
  EXPECT_EQ(level(true, 0), "level 3: bets 30/60");
  EXPECT_EQ(level(false, 1), "in 1 hand, level 3 is next: bets 30/60");
  EXPECT_EQ(inOneLine("\nTwo\n lines\n of it"), "Two lines of it");
}

}  // namespace
}  // namespace poker::holdem
