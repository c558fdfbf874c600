// What the desk answers, how often, and what it keeps to itself: guests over TCP.

#include "Entrant.h"

#include <hostkit/ConnectionTable.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace poker::holdem {
namespace {

using namespace test;
using namespace std::chrono_literals;

TEST(TourDesk, KeepsASecondPictureUntilTheFirstIsConfirmed) {
  Place place(houseWith({quickTour(3), quickTour(3), quickTour(3)}));
  Entrant ann(place, "Ann");
  const auto begin = Clock::now();
  for (const std::size_t tour : {0u, 1u, 2u}) ann.guest.send<ClGetMultiInitializeInfo>(ann.tour(tour));
  ASSERT_TRUE(ann.guest.isAnswered());
  EXPECT_EQ(ann.guest.count<SrvMultiTourInitialize>(), 1u);
  EXPECT_EQ(ann.guest.count<SrvMultiTourDetailedInfo>(), 1u);
  ann.guest.send<ClBigInfoSent>(ann.tour(0));
  // Of the two, the last question, a second after the first picture.
  ASSERT_TRUE(ann.guest.waitFor([&] { return ann.guest.count<SrvMultiTourInitialize>() == 2; }));
  EXPECT_GE(Clock::now() - begin, 1s);
  EXPECT_EQ(ann.guest.heard<SrvMultiTourInitialize>()->tourID(), ann.tour(2));
  ann.guest.send<ClBigInfoSent>(ann.tour(2));
  ann.guest.send<ClBigInfoSent>(ann.tour(2));
  EXPECT_FALSE(place.runUntil([&] { return ann.guest.count<SrvMultiTourInitialize>() > 2; }, 1200ms));
}

TEST(TourDesk, TellsChangesToWhoHasThePictureAndThePictureToAllOthers) {
  Place place(houseWith({quickTour(3), quickTour(3)}));
  Entrant ann(place, "Ann"), bob(place, "Bob");
  const auto ask = [&](const TourBoard::Versions& known, std::size_t tour = 0) {
    ann.guest.send<ClGetUpdateInfo>(known.tables, known.players, known.text, ann.tour(tour), known.prizes, known.fund);
  };
  const auto pictures = [&] { return ann.guest.count<SrvMultiTourInitialize>(); };
  for (int i = 0; i < 20; ++i) ask({});
  ASSERT_TRUE(ann.guest.isAnswered());
  EXPECT_EQ(pictures(), 1u);
  EXPECT_EQ(ann.guest.count<SrvUpdatePlayers>() + ann.guest.count<SrvUpdateText>(), 0u);

  const TourBoard::Versions known = tourOf(place).board().versions();
  ask(known);
  ASSERT_TRUE(ann.guest.isAnswered());
  ASSERT_EQ(bob.enters(), Registration::Registered);
  ask(known);
  ASSERT_TRUE(ann.guest.isAnswered());
  EXPECT_EQ(ann.guest.count<SrvUpdatePlayers>(), 1u);
  EXPECT_EQ(ann.guest.heard<SrvUpdatePlayers>()->getPlayersInfo().players.size(), 1u);
  EXPECT_EQ(ann.guest.count<SrvUpdateTables>(), 0u);

  // Versions from elsewhere, of one part or of all, and another tournament's: not before the first one is confirmed.
  const TourBoard::Versions now = tourOf(place).board().versions();
  TourBoard::Versions strange = now;
  strange.prizes = now.prizes + 1;
  ask(now, 1);
  ASSERT_TRUE(ann.guest.isAnswered());
  EXPECT_EQ(pictures(), 1u);
  ann.guest.send<ClBigInfoSent>(ann.tour());
  ASSERT_TRUE(ann.guest.waitFor([&] { return pictures() == 2; }));
  EXPECT_EQ(ann.guest.heard<SrvMultiTourInitialize>()->tourID(), ann.tour(1));
  ann.guest.send<ClBigInfoSent>(ann.tour(1));
  ann.guest.forget();
  ask(strange);
  ASSERT_TRUE(ann.guest.waitFor([&] { return pictures() == 1; }));
  EXPECT_EQ(ann.guest.count<SrvUpdatePrizeDescr>(), 0u);
}

TEST(TourDesk, TellsDetailsOnceASecond) {
  Place place(houseWith({quickTour(3), quickTour(3)}));
  Entrant ann(place, "Ann"), bob(place, "Bob");
  const auto begin = Clock::now();
  for (int i = 0; i < 20; ++i) ann.guest.send<ClGetTourDetails>(ann.tour(0), 0u);
  ann.guest.send<ClGetTourDetails>(ann.tour(1), 0u);
  ASSERT_TRUE(ann.guest.isAnswered());
  EXPECT_EQ(ann.guest.count<SrvTourDetails>(), 1u);
  bob.guest.send<ClGetTourDetails>(bob.tour(0), 0u);
  ASSERT_TRUE(bob.guest.isAnswered());
  EXPECT_EQ(bob.guest.count<SrvTourDetails>(), 1u) << "another connection";
  ASSERT_TRUE(ann.guest.waitFor([&] { return ann.guest.count<SrvTourDetails>() == 2; }));
  EXPECT_GE(Clock::now() - begin, 1s);
  EXPECT_EQ(ann.guest.heard<SrvTourDetails>()->touranmentID(), ann.tour(1));
  EXPECT_FALSE(place.runUntil([&] { return ann.guest.count<SrvTourDetails>() > 2; }, 1200ms));
}

TEST(TourDesk, LooksAtThreeWrongPasswordsInARow) {
  TourSettings secret = quickTour(3), other = quickTour(3);
  secret.password = "sesame";
  other.password = "poppy";
  Place place(houseWith({secret, other}));
  Entrant ann(place, "Ann"), bob(place, "Bob");
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 2; ++i) EXPECT_EQ(ann.enters(0, "open"), Registration::WrongPassword);
    EXPECT_EQ(ann.enters(0), Registration::PasswordNeeded) << "no try";
    EXPECT_EQ(ann.enters(0, "sesame"), Registration::Registered);
    EXPECT_EQ(ann.withdraws(0), Withdrawal::Unregistered);
  }
  EXPECT_EQ(bob.enters(0, "a"), Registration::WrongPassword);
  EXPECT_EQ(bob.enters(0, "b"), Registration::WrongPassword);
  EXPECT_EQ(bob.enters(1, "poppy"), Registration::Registered);  // which says nothing of the other
  EXPECT_EQ(bob.enters(0, "c"), Registration::WrongPassword);
  EXPECT_EQ(bob.enters(0, "sesame"), Registration::WrongPassword);
  bob.guest.close();
  Entrant again(place, "Bob");
  EXPECT_EQ(again.enters(0, "sesame"), Registration::Registered);
}

TEST(TourDesk, TellsSubscribersOfChipsUntilTheyUnsubscribe) {
  TourSettings tour = quickTour(2);
  tour.handPause = 100ms;
  Place place(houseWith({tour}));
  Entrant ann(place, "Ann"), bob(place, "Bob"), eve(place, "Eve"), fay(place, "Fay");
  ASSERT_EQ(ann.enters(), Registration::Registered);
  ASSERT_EQ(bob.enters(), Registration::Registered);
  ASSERT_NE(ann.guest.hears<SrvTourMoveToTable>(), nullptr);
  const std::uint32_t table = ann.guest.heard<SrvTourMoveToTable>()->tableID();
  eve.guest.send<ClSubscribeForTable>(table, ann.tour());
  ASSERT_NE(eve.guest.hears<SrvUpdatePlayersMoney>(), nullptr);
  eve.guest.forget();
  Entrant& first = ann.guest.waitFor([&] { return ann.isAsked() || bob.isAsked(); }) && ann.isAsked() ? ann : bob;
  Entrant& second = &first == &ann ? bob : ann;
  // With a pot from an earlier betting round.
  first.plays(UserAction::Call);
  second.plays(UserAction::Check);
  ASSERT_NE(second.guest.hears<SrvPotCardDeal>(), nullptr);
  fay.guest.send<ClSubscribeForTable>(table, ann.tour());
  const auto* before = fay.guest.hears<SrvUpdatePlayersMoney>();
  ASSERT_NE(before, nullptr);
  for (const auto& player : before->getPlayers()) EXPECT_EQ(player.money, units(1500)) << "what it began the hand with";
  fay.guest.forget();
  second.plays(UserAction::Bet);
  first.plays(UserAction::Fold);
  const auto* chips = eve.guest.hears<SrvUpdatePlayersMoney>();
  ASSERT_NE(chips, nullptr);
  ASSERT_EQ(chips->getPlayers().size(), 2u);
  EXPECT_EQ(chips->getPlayers()[0].money + chips->getPlayers()[1].money, units(3000));
  EXPECT_NE(chips->getPlayers()[0].money, chips->getPlayers()[1].money);
  const auto* same = fay.guest.hears<SrvUpdatePlayersMoney>();
  ASSERT_NE(same, nullptr);
  ASSERT_EQ(same->getPlayers().size(), 2u);
  for (std::size_t i = 0; i < 2; ++i) EXPECT_EQ(same->getPlayers()[i].money, chips->getPlayers()[i].money);
  eve.guest.send<ClUnsubscribeClient>(ann.tour());
  ASSERT_TRUE(eve.guest.isAnswered());
  eve.guest.forget();
  Entrant& next = ann.guest.waitFor([&] { return ann.isAsked() || bob.isAsked(); }) && ann.isAsked() ? ann : bob;
  next.plays(UserAction::Fold);
  EXPECT_TRUE(fay.guest.waitFor([&] { return fay.guest.count<SrvUpdatePlayersMoney>() == 2; }));
  EXPECT_FALSE(place.runUntil([&] { return eve.guest.heard<SrvUpdatePlayersMoney>() != nullptr; }, 1500ms));
}

// The longest that there may be, of names, cities, tables and prizes, at once with all details.
TEST(TourDesk, CanShowTheLargestTournament) {
  TourBoard board(7);
  TournamentDetailedInfo details;
  PrizeSchemeInfoMap prizes;
  details.version = 1;
  std::uint32_t random = 1;
  for (std::uint32_t i = 1; i <= kMostTourPlayers; ++i) {
    MultiTourPlayerEntry entry;
    entry.tableID = 70'000 + (i + 1) / 2;
    entry.player.playerID = i;
    entry.player.name = std::string(15, 'x') + std::to_string(10'000 + i);
    for (int letter = 0; letter < 50; ++letter) {
      entry.player.city += static_cast<char>((random = random * 1664525u + 1013904223u) >> 24 | 1);
    }
    board.setPlayer(entry);
    details.players.emplace_back().player = entry.player;
    MultiTourTableEntry table;
    table.tableID = entry.tableID;
    table.name = std::string(kLongestTableName, 'T') + ", table " + std::to_string(table.tableID);
    board.setTable(table);
    PrizeSchemeInfoRow row;
    row.place = static_cast<std::int32_t>(i);
    row.amount = RealMoneyType::fromUnits(i);
    prizes.add(row);
  }
  board.setPrizes(prizes);
  Place place(houseWith({quickTour(2)}));
  const ConnectionID last = nextConnectionID();
  Entrant ann(place, "Ann");
  const ConnectionID client(last.value() + 1);
  Outbox& outbox = place.server.house().outbox();
  outbox.run([&] {
    outbox.add<SrvTourDetails>(client, details, 7u);
    board.tellAll(outbox, client);
    outbox.add<SrvTourTourneyStatus>(client, TOUR_NAMES::TourStatus::Registering, 7u);
  });
  ASSERT_NE(ann.guest.hears<SrvTourTourneyStatus>(), nullptr);
  ASSERT_NE(ann.guest.heard<SrvMultiTourInitialize>(), nullptr);
  ASSERT_NE(ann.guest.heard<SrvTourDetails>(), nullptr);
  EXPECT_EQ(ann.guest.heard<SrvMultiTourInitialize>()->getPlayersInfo().players.size(), kMostTourPlayers);
  EXPECT_EQ(ann.guest.heard<SrvTourDetails>()->getInfo().players.size(), kMostTourPlayers);
}

}  // namespace
}  // namespace poker::holdem
