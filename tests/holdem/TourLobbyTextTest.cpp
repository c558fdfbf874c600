#include <examples/holdem/client/tournament/TourLobbyText.h>
#include <hostkit/CommandHandle.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace poker::holdem {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

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
  for (std::string line : lines) {
    for (std::size_t at; (at = line.find("·")) != std::string::npos;) line.erase(at, 2);
    EXPECT_TRUE(std::all_of(line.begin(), line.end(), [](char c) { return c >= 0x20 && c <= 0x7E; })) << line;
  }
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

TEST(TourLobbyText, NamesWhoLeadsATableUnlessSeveralDo) {
  const auto leadersOf = [](std::vector<std::pair<std::string, int>> players) {
    const auto chips = make<SrvUpdatePlayersMoney>(7u, 3u);
    for (const auto& [name, units] : players) chips->addPlayer(name, RealMoneyType::fromUnits(units));
    return tableLeaders(*chips);
  };
  const TableLeaders four = leadersOf({{"Ann", 900}, {"Ben", 2100}, {"Cy", 1000}, {"Dan", 2000}});
  EXPECT_EQ(four.first, "Ben");
  EXPECT_EQ(four.text, "table 7: Ben 2100 · Dan 2000 · Cy 1000");
  EXPECT_EQ(leadersOf({{"Ann", 1500}, {"Ben", 1500}, {"Cy", 1400}}).first, "");
  EXPECT_EQ(leadersOf({{"Ann", 1500}}).first, "Ann");
  EXPECT_EQ(leadersOf({}).first, "");
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
