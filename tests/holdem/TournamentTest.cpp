// What the house answers about tournaments, and how one goes from registration to its end: guests who say just what a test
// wants, over TCP. Whole tournaments are in ManyTournamentsTest.cpp.

#include "Entrant.h"
#include "TempFolder.h"

#include <examples/holdem/server/bank/TourBank.h>
#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <string>
#include <vector>

namespace poker::holdem {
namespace {

using namespace test;
using namespace std::chrono_literals;
using Extra = SrvGetExtraMoneyReply::Reason;
using TOUR_NAMES::TourStatus;

TEST(Tournaments, SayWhyARegistrationIsRefused) {
  TempFolder folder;
  const std::string file = folder.file("bank");
  {
    Bank bank({file, 1});
    TourBank tournaments(bank);
    const AccountID ann = *bank.openAccount("Ann", "secret", "", units(1000));
    const std::uint32_t won = tournaments.open("Earlier");
    ASSERT_TRUE(tournaments.enter(won, ann, units(1), units(0)));
    tournaments.finish(won, {{ann, 1, units(1)}});
  }
  TourSettings secret = quickTour(3), invited = quickTour(3), dear = quickTour(3), later = quickTour(3);
  TourSettings beginners = quickTour(3);
  secret.password = "sesame";
  invited.invited = {"BOB", "Cleo"};
  dear.buyIn = units(5000);
  later.opensAfter = 1h;
  beginners.mostWins = 1;
  ServerSettings settings = houseWith({secret, invited, dear, later, beginners, quickTour(2)});
  settings.house.bank.file = file;
  settings.house.mostTournaments = 2;
  Place place(settings);
  Entrant ann(place, "Ann"), bob(place, "Bob"), cleo(place, "Cleo");

  EXPECT_EQ(ann.enters(0), Registration::PasswordNeeded);
  EXPECT_EQ(ann.enters(0, "Sesame"), Registration::WrongPassword);
  EXPECT_EQ(ann.guest.heard<SrvTourRegisterResult>()->choice(), TourMoneyChooser(units(55), kZeroMoney, true));
  EXPECT_EQ(ann.enters(0, "sesame"), Registration::Registered);
  EXPECT_EQ(ann.enters(0, "sesame"), Registration::AlreadyRegistered);
  EXPECT_EQ(ann.balance(), units(945));
  EXPECT_EQ(ann.enters(1), Registration::NotAllowed);
  EXPECT_EQ(ann.enters(2), Registration::FailedAskSupport);
  EXPECT_EQ(ann.enters(3), Registration::Failed);
  EXPECT_EQ(ann.enters(4), Registration::WonTournamentsLimit);
  EXPECT_EQ(ann.enters(5, "", {units(54), kZeroMoney, true}), Registration::Failed);
  EXPECT_EQ(ann.enters(5, "", {kZeroMoney, units(55), true}), Registration::Failed);

  EXPECT_EQ(bob.enters(1), Registration::Registered);
  EXPECT_EQ(bob.enters(4), Registration::Registered);
  EXPECT_EQ(bob.enters(5), Registration::ParticipationLimit);
  EXPECT_EQ(bob.withdraws(4), Withdrawal::Unregistered);
  EXPECT_EQ(bob.withdraws(4), Withdrawal::Failed);
  EXPECT_EQ(bob.balance(), units(945));

  EXPECT_EQ(ann.enters(5, "", {units(55), kZeroMoney, true}), Registration::Registered);
  EXPECT_EQ(bob.enters(5), Registration::Registered);
  EXPECT_EQ(cleo.enters(5), Registration::AlreadyStarted);
  EXPECT_EQ(bob.withdraws(5), Withdrawal::AlreadyStarted);

  cleo.guest.forget();
  cleo.guest.send<ClTourRegister>(999'999u, TourMoneyChooser::empty(), "");
  EXPECT_EQ(cleo.guest.hears<SrvTourRegisterResult>()->reason(), Registration::Failed);
  EXPECT_EQ(place.bank().audit().difference(), kZeroMoney);
}

TEST(Tournaments, AProtectedOneIsOnTheListAndOtherwiseForItsPlayers) {
  TourSettings secret = quickTour(2);
  secret.password = "sesame";
  Place place(houseWith({secret}));
  Entrant ann(place, "Ann"), bob(place, "Bob"), eve(place, "Eve");
  ASSERT_EQ(ann.enters(0, "sesame"), Registration::Registered);
  ASSERT_EQ(bob.enters(0, "sesame"), Registration::Registered);
  ASSERT_NE(ann.guest.hears<SrvTourMoveToTable>(), nullptr);
  const std::uint32_t tour = ann.tour(), table = ann.guest.heard<SrvTourMoveToTable>()->tableID();
  eve.guest.send<ClGetTournamentsInfo>(TOUR_NAMES::TourType::SingleTable, 0u);
  ASSERT_NE(eve.guest.hears<SrvTournamentsInfo>(), nullptr);
  ASSERT_EQ(eve.guest.heard<SrvTournamentsInfo>()->getInfo().tournaments.size(), 1u);
  const auto askAll = [&](Entrant& who) {
    who.guest.forget();
    who.guest.send<ClGetTourDetails>(tour, 0u);
    who.guest.send<ClGetMultiInitializeInfo>(tour);
    who.guest.send<ClGetUpdateInfo>(0u, 0u, 0u, tour, 0u, 0u);
    who.guest.send<ClSubscribeForTable>(table, tour);
    who.guest.send<ClGetTourTableInfo>(tour, table);
    who.guest.enter(table);
    EXPECT_TRUE(who.guest.isAnswered());
    return who.guest.count<SrvTourProtectionError>();
  };
  EXPECT_EQ(askAll(eve), 6u);
  EXPECT_EQ(eve.guest.heard<SrvTableState>(), nullptr);
  EXPECT_EQ(eve.guest.heard<SrvUpdatePlayersMoney>(), nullptr);
  EXPECT_EQ(askAll(ann), 0u);
  EXPECT_EQ(ann.guest.heard<SrvTourTableInfo>()->getInfo().tournamentID, tour);
  EXPECT_EQ(ann.guest.heard<SrvUpdatePlayersMoney>()->getPlayers().size(), 2u);
}

TEST(Tournaments, CountDownAndTakeTheirPlayersToTheTable) {
  TourSettings tour = quickTour(3);
  tour.seatingTime = 500ms;
  Place place(houseWith({tour}));
  Entrant ann(place, "Ann"), bob(place, "Bob"), cleo(place, "Cleo");
  ASSERT_EQ(ann.enters(), Registration::Registered);
  ASSERT_TRUE(ann.guest.isAnswered());
  EXPECT_EQ(ann.guest.heard<SrvTourTourneyStatus>()->status(), TourStatus::Registering);
  EXPECT_EQ(ann.guest.heard<SrvTourStartInfo>()->infoText(),
            "The tournament will start when another 2 players register.");
  // Of changes that come one upon the other, all hear once a second.
  ASSERT_EQ(bob.enters(), Registration::Registered);
  EXPECT_TRUE(ann.guest.waitFor([&] {
    return ann.guest.heard<SrvTourStartInfo>()->infoText() ==
           "The tournament will start when one more player registers.";
  }));
  ASSERT_EQ(bob.withdraws(), Withdrawal::Unregistered);
  EXPECT_TRUE(ann.guest.waitFor([&] { return ann.guest.heard<SrvTourStartInfo>()->getPlayers() == 2; }));
  ASSERT_EQ(bob.enters(), Registration::Registered);
  bob.guest.close();
  ann.guest.forget();
  ASSERT_EQ(cleo.enters(), Registration::Registered);

  ASSERT_NE(ann.guest.hears<SrvTableState>(), nullptr);
  const std::uint32_t table = ann.guest.heard<SrvTourMoveToTable>()->tableID();
  const GameStartupInfo& info = ann.guest.heard<SrvTakeSeatInfo>()->getTableInfo();
  const ClientTableState& state = ann.guest.heard<SrvTableState>()->getState();
  EXPECT_EQ(info.gameID, table);
  EXPECT_EQ(state.gameID, table);
  EXPECT_TRUE(state.ownSeat.isValid());
  EXPECT_EQ(info.ownSeat, state.ownSeat);
  EXPECT_EQ(state.seats.size(), 3u);
  EXPECT_EQ(ann.guest.heard<SrvTourStartInfo>()->getPlayers(), 0);
  EXPECT_EQ(ann.guest.heard<SrvTourStartInfo>()->getSeconds(), 1);
  ASSERT_TRUE(ann.guest.waitFor([&] { return ann.guest.heard<SrvGameStart>() != nullptr; }));
  EXPECT_EQ(ann.guest.heard<SrvTourTourneyStatus>()->status(), TourStatus::Started);
  EXPECT_TRUE(ann.guest.heard<SrvLevelSwitch>()->isSwitching());

  // Who was away at the draw comes to its table when it asks, and is told how the tournament stands without asking.
  Entrant again(place, "Bob");
  ASSERT_TRUE(again.guest.isAnswered());
  EXPECT_EQ(again.guest.heard<SrvTourTourneyStatus>()->status(), TourStatus::Started);
  EXPECT_EQ(again.guest.heard<SrvTableState>(), nullptr);
  again.guest.send<ClMoveMe2MyTable>(again.tour(), 0u);
  ASSERT_NE(again.guest.hears<SrvTableState>(), nullptr);
  EXPECT_TRUE(again.guest.heard<SrvTableState>()->getState().ownSeat.isValid());

  // Nobody sits down, brings chips or leaves.
  ann.guest.forget();
  ann.guest.send<ClMoreMoney>(units(10));
  ann.guest.sitDown(7, 100);
  ann.guest.send<ClLeaveSeat>();
  ASSERT_TRUE(ann.guest.isAnswered());
  EXPECT_EQ(ann.guest.count<SrvSitError>(), 2u);
  EXPECT_EQ(tourOf(place).table(table)->players(), 3u);
}

TEST(Tournaments, StartByTheirTimeOrAreCalledOff) {
  TourSettings both = quickTour(9), lonely = quickTour(9);
  both.startsAfter = lonely.startsAfter = 3s;
  both.startWith = 4;
  lonely.startWith = 0;
  Place place(houseWith({both, lonely}));
  Entrant ann(place, "Ann"), bob(place, "Bob");
  ASSERT_EQ(ann.enters(0), Registration::Registered);
  ASSERT_EQ(bob.enters(0), Registration::Registered);
  ASSERT_EQ(bob.enters(1), Registration::Registered);
  EXPECT_TRUE(ann.guest.waitFor([&] { return ann.guest.heard<SrvTourStartInfo>()->getPlayers() == 2; }));
  EXPECT_GE(ann.guest.heard<SrvTourStartInfo>()->getSeconds(), 1);
  ASSERT_NE(ann.guest.hears<SrvGameStart>(), nullptr);
  const auto* notice = bob.guest.hears<SrvAdminMsg>();
  ASSERT_NE(notice, nullptr);
  EXPECT_EQ(notice->message(),
            "Quick is called off: Too few players have registered. What you have paid is paid back.");
  EXPECT_TRUE(tourOf(place, 1).isOver());
  EXPECT_EQ(bob.enters(1), Registration::AlreadyStarted);
  bob.guest.send<ClGetTourDetails>(bob.tour(1), 0u);
  EXPECT_EQ(bob.guest.hears<SrvTourDetails>()->getInfo().description, "Called off: Too few players have registered.");
  EXPECT_EQ(bob.balance(), units(945));
  EXPECT_EQ(place.bank().audit().difference(), kZeroMoney);
}

/// Players who put everything in, hand after hand.
class AllIn {
 public:
  AllIn(Place& place, std::vector<Entrant*> players) : place_(place), players_(std::move(players)) {}

  /// All who are asked put everything in, until the hand is over.
  void playHand() {
    const std::uint64_t before = hands();
    ASSERT_TRUE(place_.runUntil([&] {
      for (Entrant* player : players_) {
        if (!player->isAsked()) continue;
        player->guest.forget();
        player->guest.send<ClTurnReceived>();
        player->guest.send<ClUserAction>(UserAction::AllIn);
        player->guest.send<ClUserAction>(UserAction::Call);
      }
      return hands() > before;
    }));
  }

 private:
  std::uint64_t hands() { return place_.bank().lastHandNumber(); }

  Place& place_;
  std::vector<Entrant*> players_;
};

TEST(Tournaments, MovePlayersBetweenHandsAndOnlookersWithThem) {
  TourSettings tour = quickTour(4);
  tour.seats = 2;
  Place place(houseWith({tour}));
  Entrant ann(place, "Ann"), bob(place, "Bob"), cleo(place, "Cleo"), dan(place, "Dan"), eve(place, "Eve");
  const std::vector<Entrant*> all = {&ann, &bob, &cleo, &dan};
  for (Entrant* each : all) ASSERT_EQ(each->enters(), Registration::Registered);
  std::map<std::uint32_t, std::vector<Entrant*>> tables;
  for (Entrant* each : all) {
    ASSERT_NE(each->guest.hears<SrvTourMoveToTable>(), nullptr);
    tables[each->guest.heard<SrvTourMoveToTable>()->tableID()].push_back(each);
  }
  ASSERT_EQ(tables.size(), 2u);
  const std::uint32_t firstTable = tables.begin()->first, lastTable = tables.rbegin()->first;
  const std::vector<Entrant*>&atFirst = tables[firstTable], &atLast = tables[lastTable];
  eve.guest.enter(lastTable);
  ASSERT_NE(eve.guest.hears<SrvTableState>(), nullptr);

  // One is left at the first table, which waits for the other one.
  AllIn first(place, atFirst);
  while (tourOf(place).playersLeft() == 4) first.playHand();
  for (Entrant* each : atFirst) ASSERT_TRUE(each->guest.isAnswered());
  Entrant& lonely = *atFirst[atFirst[0]->guest.heard<SrvTourPlayerFinished>() != nullptr ? 1 : 0];
  Entrant& out = &lonely == atFirst[0] ? *atFirst[1] : *atFirst[0];
  EXPECT_EQ(out.guest.hears<SrvTourPlayerFinished>()->getText(), "You are out of Quick, in place 4 of 4.");
  ASSERT_TRUE(lonely.guest.isAnswered());
  EXPECT_EQ(lonely.guest.heard<SrvTourStartInfo>()->getPlayers(), SrvTourStartInfo::SusOnMoveSpecialPlayerCountValue);
  EXPECT_EQ(out.enters(), Registration::AlreadyStarted);
  // At the other table one gives its chips away, until the last two of the tournament come together at the first.
  atLast[0]->guest.send<ClLeaveSeat>();
  AllIn last(place, {atLast[1]});
  while (tourOf(place).playersLeft() == 3) last.playHand();
  ASSERT_TRUE(place.runUntil([&] { return tourOf(place).table(lastTable) == nullptr || tourOf(place).isOver(); }));
  ASSERT_TRUE(eve.guest.isAnswered());
  ASSERT_NE(eve.guest.heard<SrvTourMoveToTable>(), nullptr);
  EXPECT_EQ(eve.guest.heard<SrvTableState>()->getState().gameID, firstTable);
  // A number of a table that is broken leads to another one, if there is one.
  Entrant flo(place, "Flo");
  flo.guest.enter(lastTable);
  ASSERT_TRUE(flo.guest.isAnswered());
  EXPECT_EQ(flo.guest.heard<SrvTourMoveToTable>() != nullptr, !tourOf(place).isOver());
  EXPECT_FALSE(flo.guest.isClosed);
}

TEST(Tournaments, SellChipsWhileThereIsTimeForIt) {
  TourSettings tour = quickTour(2);
  tour.rebuys = 1;
  tour.rebuyLevels = 1;
  tour.rebuyPrice = units(30);
  tour.rebuyChips = units(1000);
  tour.addOnPrice = units(40);
  tour.addOnChips = units(2000);
  tour.levelLength = 8;
  tour.rebuyTime = 60s;
  tour.handPause = 20ms;
  Place place(houseWith({tour}));
  Entrant ann(place, "Ann"), bob(place, "Bob"), eve(place, "Eve");
  const std::vector<Entrant*> both = {&ann, &bob};
  ASSERT_EQ(ann.enters(), Registration::Registered);
  EXPECT_EQ(ann.asks(Request::Rebuy).getReason(), Extra::NotStarted);
  EXPECT_EQ(eve.asks(Request::Rebuy).getReason(), Extra::Failed);
  ASSERT_EQ(bob.enters(), Registration::Registered);
  ASSERT_NE(ann.guest.hears<SrvGameStart>(), nullptr);
  EXPECT_EQ(ann.asks(Request::AddOn).getReason(), Extra::Failed) << "before its time";

  AllIn game(place, both);
  for (int hand = 0; hand < 5 && ann.guest.heard<OutOfMoney>() == nullptr && bob.guest.heard<OutOfMoney>() == nullptr;
       ++hand) {
    game.playHand();
    ASSERT_TRUE(ann.guest.isAnswered() && bob.guest.isAnswered());
  }
  Entrant& loser = ann.guest.heard<OutOfMoney>() != nullptr ? ann : bob;
  Entrant& winner = &loser == &ann ? bob : ann;
  EXPECT_EQ(winner.asks(Request::Rebuy).getReason(), Extra::BalanceTooHigh);
  const auto& rebuy = loser.asks(Request::Rebuy);
  EXPECT_EQ(rebuy.getReason(), Extra::Done);
  EXPECT_FALSE(rebuy.rebuyInAdvance());
  EXPECT_EQ(loser.asks(Request::Rebuy).getReason(), Extra::NoRebuysLeft);
  EXPECT_EQ(loser.balance(), units(945 - 30));

  // With the second level come add-ons, and re-buys are over.
  const auto foldHand = [&] {
    Entrant& first = ann.guest.waitFor([&] { return ann.isAsked() || bob.isAsked(); }) && ann.isAsked() ? ann : bob;
    first.plays(UserAction::Fold);
  };
  ASSERT_TRUE(place.runUntil([&] {
    if (ann.isAsked() || bob.isAsked()) foldHand();
    return ann.guest.heard<SrvAdminMsg>() != nullptr || bob.guest.heard<SrvAdminMsg>() != nullptr;
  }));
  EXPECT_EQ(winner.asks(Request::Rebuy).getReason(), Extra::TooLate);
  loser.guest.forget();
  winner.guest.forget();
  loser.guest.send<ClGetExtraMoney>(Request::AddOn, true, 1u, loser.tour(),
                                    TourMoneyChooser(units(40), kZeroMoney, true));
  ASSERT_TRUE(place.runUntil([&] {
    for (Entrant* each : both) {
      if (!each->isAsked()) continue;
      each->guest.send<ClTurnReceived>();
      each->guest.send<ClUserAction>(UserAction::Fold);
      return loser.guest.heard<SrvGetExtraMoneyReply>() != nullptr;
    }
    return loser.guest.heard<SrvGetExtraMoneyReply>() != nullptr;
  }));
  EXPECT_EQ(loser.guest.heard<SrvGetExtraMoneyReply>()->getReason(), Extra::Done);
  EXPECT_EQ(loser.asks(Request::AddOn).getReason(), Extra::Failed) << "a second one";
  EXPECT_EQ(tourOf(place).chipsInPlay(), units(1500 + 1500 + 1000 + 2000));
  EXPECT_EQ(tourOf(place).numbers().addOns, 1u);
  EXPECT_EQ(place.bank().audit().difference(), kZeroMoney);
}

TEST(Tournaments, StandStillWhenTheHostStopsThemAndGoOn) {
  Place place(houseWith({quickTour(2)}));
  Entrant ann(place, "Ann"), bob(place, "Bob");
  ASSERT_EQ(ann.enters(), Registration::Registered);
  ASSERT_EQ(bob.enters(), Registration::Registered);
  ASSERT_NE(ann.guest.hears<SrvGameStart>(), nullptr);
  place.server.toggleTournaments();
  ASSERT_TRUE(ann.guest.isAnswered());
  EXPECT_EQ(ann.guest.heard<SrvTourTourneyStatus>()->status(), TourStatus::Suspended);
  EXPECT_TRUE(ann.guest.heard<SrvTourStartInfo>()->isSuspended());
  // The hand that is played goes to its end, and no other one begins.
  Entrant& first = ann.guest.waitFor([&] { return ann.isAsked() || bob.isAsked(); }) && ann.isAsked() ? ann : bob;
  first.plays(UserAction::Fold);
  ASSERT_NE(ann.guest.hears<SrvTUShowDown>(), nullptr);
  ann.guest.forget();
  EXPECT_FALSE(place.runUntil([&] { return ann.guest.heard<SrvGameStart>() != nullptr; }, 300ms));
  place.server.toggleTournaments();
  ASSERT_NE(ann.guest.hears<SrvGameStart>(), nullptr);
  EXPECT_EQ(ann.guest.heard<SrvTourTourneyStatus>()->status(), TourStatus::Started);
}

TEST(Tournaments, WaitForTheAbsentAndThenPlayWithoutThem) {
  TourSettings tour = quickTour(2);
  tour.absentTime = 1s;
  tour.replyTime = 50ms;
  tour.levelLength = 5;
  Place place(houseWith({tour}));
  {
    Entrant ann(place, "Ann"), bob(place, "Bob");
    ASSERT_EQ(ann.enters(), Registration::Registered);
    bob.guest.send<ClTourRegister>(bob.tour(), TourMoneyChooser::empty(), "");
    ASSERT_NE(ann.guest.hears<SrvGameStart>(), nullptr);
  }
  Entrant eve(place, "Eve");
  eve.guest.enter(tourOf(place).id() * Tournament::kTablesEach + 1);
  ASSERT_TRUE(place.runUntil([&] { return tourOf(place).isOver(); }));
  bool hasWaited = false;
  eve.guest.each<SrvTourStartInfo>([&](const SrvTourStartInfo& info) {
    hasWaited = hasWaited || info.getPlayers() == SrvTourStartInfo::SuspendedSpecialPlayerCountValue;
  });
  EXPECT_TRUE(hasWaited);
  EXPECT_EQ(place.bank().audit().difference(), kZeroMoney);
}

TEST(Tournaments, AreCalledOffWhenTheHouseClosesAndPayEverythingBack) {
  ServerSettings settings = houseWith({quickTour(2), quickTour(3)});
  settings.grace = 0ms;
  Place place(settings);
  Entrant ann(place, "Ann"), bob(place, "Bob");
  ASSERT_EQ(ann.enters(0), Registration::Registered);
  ASSERT_EQ(ann.enters(1), Registration::Registered);
  ASSERT_EQ(bob.enters(0), Registration::Registered);
  ASSERT_NE(ann.guest.hears<SrvGameStart>(), nullptr);
  place.server.drain();
  EXPECT_EQ(bob.enters(1), Registration::AlreadyStarted) << "it is over";
  Entrant& first = ann.guest.waitFor([&] { return ann.isAsked() || bob.isAsked(); }) && ann.isAsked() ? ann : bob;
  first.plays(UserAction::Fold);
  ASSERT_TRUE(place.runUntil([&] { return tourOf(place, 0).isOver() && tourOf(place, 1).isOver(); }));
  EXPECT_EQ(ann.balance(), units(1000));
  EXPECT_EQ(bob.balance(), units(1000));
  EXPECT_EQ(place.bank().audit().difference(), kZeroMoney);
  EXPECT_TRUE(place.runUntil([&] { return place.ended; }));
}

}  // namespace
}  // namespace poker::holdem
