#include <examples/holdem/server/tournament/TourList.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace poker::holdem {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(TourList, TellsWhatHasChangedAndHowManyThereAre) {
  using TOUR_NAMES::TourStatus;
  // From two blocks of numbers, as after another server.
  std::uint32_t reserved = 5001;
  VersionNumbers numbers([&](std::uint32_t count) { return std::exchange(reserved, reserved + count); });
  TourList list(TOUR_NAMES::TourType::SingleTable, numbers);
  TournamentsInfo told;
  list.changesSince(0, told);
  EXPECT_EQ(told.type, TOUR_NAMES::TourType::SingleTable);
  EXPECT_EQ(told.version, 5001u);
  EXPECT_THAT(told.tournaments, IsEmpty());

  TourListEntry line;
  const auto ids = [&] {
    std::vector<std::uint32_t> all;
    for (const TourListEntry& each : told.tournaments) {
      all.push_back(each.tournamentID);
      EXPECT_LE(each.version, told.version);
    }
    return all;
  };
  std::uint32_t version = told.version;
  for (const TourStatus status :
       {TourStatus::Announced, TourStatus::Registering, TourStatus::Registering, TourStatus::Prestarted,
        TourStatus::Started, TourStatus::Suspended, TourStatus::Finished, TourStatus::Finished}) {
    ++line.tournamentID;
    line.status = status;
    line.version = 1000;  // of no meaning here
    list.set(line);
    list.set(line);
    list.changesSince(version, told);
    EXPECT_THAT(ids(), ElementsAre(line.tournamentID));
    EXPECT_EQ(told.version, ++version);
    EXPECT_EQ(told.tournaments[0].version, version);
  }
  EXPECT_THAT((std::vector{told.announced, told.registering, told.running, told.finished}), ElementsAre(1, 2, 3, 2));

  // Each of another field.
  const std::vector<std::function<void(TourListEntry&)>> changes{
      [](TourListEntry& l) { l.starts = COleDateTime(40000.5); },
      [](TourListEntry& l) { l.name = "Sunday"; },
      [](TourListEntry& l) { l.description = "A long one"; },
      [](TourListEntry& l) {
        l.cost.buyIn = {RealMoneyType::fromUnits(1), {}, true};
      },
      [](TourListEntry& l) {
        l.cost.fee = {RealMoneyType::fromUnits(1), {}, true};
      },
      [](TourListEntry& l) { l.cost.realMoney = true; },
      [](TourListEntry& l) { l.cost.currency[0] = 'U'; },
      [](TourListEntry& l) { l.prizes = "$100"; },
      [](TourListEntry& l) { l.gameType = GameType::TexasHoldem; },
      [](TourListEntry& l) { l.players = 3; },
      [](TourListEntry& l) { l.maxPlayers = 9; },
      [](TourListEntry& l) { l.tableID = 12; },
      [](TourListEntry& l) { l.status = TourStatus::Announced; },
      [](TourListEntry& l) {
        l.skin = {1, 2};
      }};
  for (const auto& change : changes) {
    change(line);
    list.set(line);
    list.set(line);
    list.changesSince(version, told);
    EXPECT_THAT(ids(), ElementsAre(line.tournamentID));
    EXPECT_EQ(told.version, ++version);
  }

  // What is gone is told to who may have it, until it comes again.
  for (const std::uint32_t id : {7u, 3u, 99u}) list.remove(id);
  list.changesSince(version, told);
  EXPECT_THAT(ids(), IsEmpty());
  EXPECT_THAT(told.removedTournaments, ElementsAre(3u, 7u));
  EXPECT_EQ(told.version, version + 1);
  EXPECT_EQ(told.registering + told.finished, 1);
  line.tournamentID = 3;
  list.set(line);
  list.changesSince(version, told);
  EXPECT_THAT(ids(), ElementsAre(3u));
  EXPECT_THAT(told.removedTournaments, ElementsAre(7u));
  for (const std::uint32_t strange : {0u, 1u, 5000u, told.version + 1, UINT32_MAX}) {
    list.changesSince(strange, told);
    EXPECT_EQ(ids().size(), 7u);
    EXPECT_THAT(told.removedTournaments, IsEmpty());
  }
}

}  // namespace
}  // namespace poker::holdem
