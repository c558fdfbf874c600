#include "MadeServer.h"

#include <examples/holdem/client/bots/Bot.h>
#include <examples/holdem/shared/Protocol.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace poker::holdem {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using enum TOUR_NAMES::TourStatus;
using RegisterReason = SrvTourRegisterResult::Reason;

constexpr std::uint32_t kTour = 7;

/// A server with one tournament. It answers pings.
class TourServer final : public test::MadeServer {
 public:
  using MadeServer::MadeServer;

  std::string password;  // of the last registration
  std::vector<std::uint32_t> versions;
  std::function<void()> loggedOn;

  void sayRegistration(RegisterReason reason) {
    say<SrvTourRegisterResult>(reason, kTour, TourMoneyChooser::empty());
    if (reason == RegisterReason::Registered) say<SrvTourTourneyStatus>(Registering, kTour);
  }
  /// The player is at a table with so many units.
  void seat(std::uint32_t tableID, int units, UserState state = UserState::Waiting) {
    GameStartupInfo info;
    info.gameID = tableID;
    info.tournamentID = kTour;
    say<SrvTourMoveToTable>(tableID);
    say<SrvTakeSeatInfo>(info);
    ClientTableState table;
    table.gameID = tableID;
    table.maxSeats = 9;
    table.ownSeat = 4;
    table.smallBlind = RealMoneyType::fromUnits(10);
    table.bigBlind = RealMoneyType::fromUnits(20);
    ClientSeatState& own = table.seats.emplace_back();
    own.seatID = 4;
    own.displayName = "Player";
    own.money = RealMoneyType::fromUnits(units);
    own.state = state;
    say<SrvTableState>(table);
  }
  void beginHand(int number) {
    say<SrvUpdateHintText>(kHandNumberHint, std::to_string(number).c_str());
    say<SrvGameStart>(SeatIDSet{4});
  }
  void sayPicture(std::uint32_t version) {
    MultiTourTablesInfo tables;
    MultiTourPlayersInfo players;
    MultiTourTextInfo text;
    tables.version = players.version = text.version = version;
    say<SrvMultiTourInitialize>(tables, players, text, kTour, PrizeSchemeInfoMap(), PrizeFundInfo(), version, version);
  }

 private:
  void onLoggedOn() override {
    if (loggedOn) loggedOn();
  }
  bool takesItself(std::string_view name, const PokerCommandI& command) override {
    if (name == "ClPing") say<SrvPing>(0);
    if (const auto* request = dynamic_cast<const ClTourRegister*>(&command)) password = request->password();
    if (const auto* request = dynamic_cast<const ClGetUpdateInfo*>(&command)) {
      versions = {request->getTablesVer(), request->getPlayersVer(), request->getTextVer(), request->prizeVersion(),
                  request->getFundVer()};
    }
    return name == "ClPing" || name == "ClBye";
  }
};

class TourClient : public testing::Test {
 protected:
  TourClient() {
    settings.player.server = server.endpoint();
    settings.player.name = "Player";
    settings.player.password = "secret";
    settings.player.tournamentID = kTour;
    settings.player.tournamentPassword = "open";
    settings.player.registersForTour = true;
    settings.player.sitsDown = true;  // which counts for nothing in a tournament
    settings.player.reconnects = 3;
  }
  /// The server answers the registration so, and what comes to it as well when the player has a table.
  void answerWith(RegisterReason reason, std::uint32_t tableID = 0) {
    server.answer = [this, reason, tableID](std::string_view name) {
      if (name == "ClTourRegister") server.sayRegistration(reason);
      if (name == "ClMoveMe2MyTable" && tableID != 0) server.seat(tableID, 700, UserState::SittingOut);
    };
  }
  void tellAtLogon(TOUR_NAMES::TourStatus status) {
    server.loggedOn = [this, status] { server.say<SrvTourTourneyStatus>(status, kTour); };
  }
  void comeIn() {
    server.heard.clear();
    end.reset();
    bot.emplace(context, settings, [this](PlayerEnd how, std::string_view text) {
      end = how;
      why = text;
    });
    bot->start();
  }
  /// As comeIn(), and plays at a table.
  void play() {
    answerWith(RegisterReason::Registered);
    comeIn();
    ASSERT_TRUE(server.hears(1));
    server.answer = nullptr;
    server.say<SrvTourTourneyStatus>(Prestarted, kTour);
    server.seat(101, 1500);
    ASSERT_TRUE(server.runUntil([&] { return bot->client().isAtTable(); }));
    server.heard.clear();
  }
  bool ends() {
    return server.runUntil([&] { return end.has_value(); });
  }

  asio::io_context context{1};
  TourServer server{context};
  BotSettings settings;
  std::optional<PlayerEnd> end;
  std::string why;
  std::optional<Bot> bot;
};

TEST_F(TourClient, RegistersIsBroughtFromTableToTableAndGoesWhenItIsOut) {
  answerWith(RegisterReason::Registered);
  comeIn();
  ASSERT_TRUE(server.runUntil([&] { return bot->client().isRegistered(); }));
  EXPECT_EQ(server.password, "open");
  EXPECT_TRUE(bot->client().isSettled());
  EXPECT_FALSE(bot->client().isAtTable()) << "there is none before the draw";
  server.say<SrvTourTourneyStatus>(Prestarted, kTour);
  server.seat(101, 1500);
  ASSERT_TRUE(server.runUntil([&] { return bot->client().isAtTable(); }));
  server.say<SrvLevelSwitch>(RealMoneyType::fromUnits(20), RealMoneyType::fromUnits(40), std::int16_t{2}, 60,
                             TOUR_NAMES::SwitchType::ByTime, true);
  ASSERT_TRUE(
      server.runUntil([&] { return bot->client().picture().state().bigBlind == RealMoneyType::fromUnits(40); }));
  // It goes from one table, then it is at the next, and has done nothing for that.
  server.say<SrvUserStateOnTable>(SeatID(4), "Player", RealMoneyType(), UserState::Empty);
  server.seat(102, 900);
  ASSERT_TRUE(server.runUntil([&] { return bot->client().picture().state().gameID == 102; }));
  EXPECT_EQ(bot->client().picture().total(), RealMoneyType::fromUnits(900));
  EXPECT_THAT(server.heard, ElementsAre("ClTourRegister"));
  server.say<SrvTourPlayerFinished>("You are out: place 3.");
  ASSERT_TRUE(ends());
  EXPECT_EQ(*end, PlayerEnd::Left);
  EXPECT_THAT(server.heard, ElementsAre("ClTourRegister", "ClMoveMe2MyTable")) << "it asks whether it has a table here";
}

TEST_F(TourClient, GivesUpWithTheReasonWhenItIsNotTaken) {
  answerWith(RegisterReason::WrongPassword);
  comeIn();
  ASSERT_TRUE(ends());
  EXPECT_EQ(*end, PlayerEnd::Refused);
  EXPECT_THAT(why, HasSubstr("password"));

  // It has begun without this player, for whom there is no table.
  answerWith(RegisterReason::AlreadyStarted);
  comeIn();
  ASSERT_TRUE(ends());
  EXPECT_EQ(*end, PlayerEnd::Refused);
  EXPECT_THAT(server.heard, ElementsAre("ClTourRegister", "ClMoveMe2MyTable"));
}

TEST_F(TourClient, WhoHasRegisteredBeforeWaitsForTheDrawOrGoesOnAtItsTable) {
  answerWith(RegisterReason::AlreadyRegistered);
  tellAtLogon(Registering);
  comeIn();
  ASSERT_TRUE(server.runUntil([&] { return bot->client().isSettled(); }));
  server.say<SrvTourTourneyStatus>(Prestarted, kTour);
  server.seat(101, 1500);
  ASSERT_TRUE(server.runUntil([&] { return bot->client().isAtTable(); }));

  // It comes back to another table, sitting out.
  server.heard.clear();
  answerWith(RegisterReason::AlreadyStarted, 102);
  tellAtLogon(Started);
  server.breakConnection();
  ASSERT_TRUE(server.hears(3));
  EXPECT_THAT(server.heard, ElementsAre("ClTourRegister", "ClMoveMe2MyTable", "ClBack"));
  EXPECT_EQ(bot->client().picture().state().gameID, 102u);

  // While it was away the next time it lost its last chips.
  answerWith(RegisterReason::AlreadyStarted);
  server.loggedOn = nullptr;
  server.breakConnection();
  ASSERT_TRUE(ends());
  EXPECT_EQ(*end, PlayerEnd::Left);
}

TEST_F(TourClient, WhoComesWhenItIsOverDoesNotWait) {
  answerWith(RegisterReason::AlreadyStarted);
  tellAtLogon(Finished);
  comeIn();
  ASSERT_TRUE(ends());
  EXPECT_EQ(*end, PlayerEnd::Left);

  // It is registered and has neither a table nor a draw to wait for: it is out.
  answerWith(RegisterReason::AlreadyRegistered);
  server.loggedOn = nullptr;
  comeIn();
  ASSERT_TRUE(ends());
  EXPECT_EQ(*end, PlayerEnd::Left);

  // All was played while it was away.
  answerWith(RegisterReason::Registered);
  comeIn();
  ASSERT_TRUE(server.runUntil([&] { return bot->client().isRegistered(); }));
  answerWith(RegisterReason::AlreadyStarted);
  server.breakConnection();
  ASSERT_TRUE(ends());
  EXPECT_EQ(*end, PlayerEnd::Left);
}

TEST_F(TourClient, GoesOnWhenItIsOutOfAnotherTournament) {
  play();
  answerWith(RegisterReason::None, 101);
  server.say<SrvTourPlayerFinished>("You are out of another one.");
  ASSERT_TRUE(server.hears(2)) << "and it is back from sitting out";
  server.beginHand(1);
  ASSERT_TRUE(server.runUntil([&] { return bot->client().picture().state().handNumber == 1; }));
  EXPECT_FALSE(end);

  // It goes from both at once: there is a table at the first question, and none at the second.
  server.heard.clear();
  server.answer = [&](std::string_view) {
    if (server.heard.size() == 1) server.seat(101, 900);  // it goes on playing there
  };
  server.say<SrvTourPlayerFinished>("You are out of another one.");
  server.say<SrvTourPlayerFinished>("You are out.");
  ASSERT_TRUE(ends());
  EXPECT_EQ(*end, PlayerEnd::Left);
}

TEST_F(TourClient, TakesItsRegistrationBackBeforeTheDrawAndGoesWhenAllIsOver) {
  answerWith(RegisterReason::Registered);
  comeIn();
  ASSERT_TRUE(server.runUntil([&] { return bot->client().isRegistered(); }));
  bot->leave();
  ASSERT_TRUE(ends());
  EXPECT_THAT(server.heard, ElementsAre("ClTourRegister", "ClTourUnregister"));

  // ... also when it does not know yet whether it is registered.
  server.answer = [&](std::string_view name) {
    if (name == "ClTourRegister") bot->leave();
  };
  comeIn();
  ASSERT_TRUE(ends());
  EXPECT_THAT(server.heard, ElementsAre("ClTourRegister", "ClTourUnregister"));

  play();
  server.say<SrvTourTourneyStatus>(Finished, kTour + 1);
  server.say<SrvTourTourneyStatus>(Started, kTour);
  server.beginHand(1);
  ASSERT_TRUE(server.runUntil([&] { return bot->client().picture().state().handNumber == 1; }));
  EXPECT_FALSE(end);
  server.say<SrvTourTourneyStatus>(Finished, kTour);  // it has won
  ASSERT_TRUE(ends());
  EXPECT_EQ(*end, PlayerEnd::Left);
  EXPECT_TRUE(server.heard.empty()) << "there is nothing to take back any more";
}

TEST_F(TourClient, BuysAsOftenAsItMayAndTheAddOnOnce) {
  settings.rebuys = 1;
  settings.addsOn = true;
  play();
  const auto broke = [&] { server.say<OutOfMoney>(RealMoneyType(), SrvErrorCode::NotEnoughMoney); };
  const auto reply = [&](ExtraMoneyRequest type, SrvGetExtraMoneyReply::Reason reason, bool flag) {
    server.say<SrvGetExtraMoneyReply>(type, reason, 0u, flag);
  };
  using Reason = SrvGetExtraMoneyReply::Reason;
  broke();
  ASSERT_TRUE(server.hears(1));
  reply(ExtraMoneyRequest::Rebuy, Reason::Done, false);
  broke();  // no more than once
  // There is no add-on yet; then there is one.
  server.say<SrvTourStartInfo>(SrvTourStartInfo::TimeBreakSpecialPlayerCountValue, 300);
  ASSERT_TRUE(server.hears(2));
  reply(ExtraMoneyRequest::AddOn, Reason::Failed, false);
  reply(ExtraMoneyRequest::AddOn, Reason::None, true);
  ASSERT_TRUE(server.hears(3));
  EXPECT_THAT(server.heard, ElementsAre("ClGetExtraMoney", "ClGetExtraMoney", "ClGetExtraMoney"));
  reply(ExtraMoneyRequest::AddOn, Reason::Done, true);
  server.say<SrvTourStartInfo>(SrvTourStartInfo::TimeBreakSpecialPlayerCountValue, 300);
  ASSERT_TRUE(server.runUntil([&] { return bot->hasAddedOn(); }));
  server.say<SrvTourTourneyStatus>(Finished, kTour);
  ASSERT_TRUE(ends());
  EXPECT_EQ(server.heard.size(), 3u);
}

TEST_F(TourClient, KeepsThePictureUpToDateHandByHand) {
  settings.followsTour = true;
  play();
  server.beginHand(1);
  ASSERT_TRUE(server.hears(1));
  server.beginHand(2);  // the whole picture is still under way
  server.sayPicture(5);
  ASSERT_TRUE(server.hears(2));
  server.beginHand(3);
  ASSERT_TRUE(server.hears(3));
  EXPECT_THAT(server.heard, ElementsAre("ClGetMultiInitializeInfo", "ClBigInfoSent", "ClGetUpdateInfo"));
  EXPECT_THAT(server.versions, ElementsAre(5u, 5u, 5u, 5u, 5u));
}

}  // namespace
}  // namespace poker::holdem
