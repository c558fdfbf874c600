// Bots at a server that says just what a test tells it.

#include <examples/holdem/client/bots/Bot.h>
#include <examples/holdem/shared/Protocol.h>
#include <hostkit/TcpServer.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace poker::holdem {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using enum TOUR_NAMES::TourStatus;
using RegisterReason = SrvTourRegisterResult::Reason;

constexpr std::uint32_t kTour = 7;

RealMoneyType units(std::int64_t count) { return RealMoneyType::fromUnits(count); }

ClientSeatState seatOf(const char* name, std::uint8_t seat, std::int64_t money, UserState state) {
  ClientSeatState taken;
  taken.seatID = seat;
  taken.displayName = name;
  taken.money = units(money);
  taken.state = state;
  return taken;
}

/// A server that lets everybody in, answers pings, and has a table of two seats and a tournament.
class MadeServer final : private SessionEvents {
 public:
  explicit MadeServer(asio::io_context& context) : context_(context), server_(context, {}, *this) { server_.start(); }

  std::vector<std::string> heard;  // by class, but for coming in, pings and the end
  std::function<void(std::string_view)> answer;
  std::function<void()> loggedOn;
  std::string password;                 // of the last registration
  std::vector<std::uint32_t> versions;  // of the last ClGetUpdateInfo
  std::string reserveID;                // of the last ClAcceptInvite
  RealMoneyType money;

  Endpoint endpoint() const { return {"127.0.0.1", server_.port()}; }
  template <class T, class... Args>
  void say(Args&&... args) {
    session_->send(*make<T>(std::forward<Args>(args)...));
  }
  void breakConnection() { session_->close(); }
  bool runUntil(const std::function<bool()>& holds) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!holds() && std::chrono::steady_clock::now() < deadline) {
      context_.run_one_for(std::chrono::milliseconds(50));
      if (context_.stopped()) context_.restart();
    }
    return holds();
  }
  bool hears(std::size_t commands) {
    return runUntil([&] { return heard.size() >= commands; });
  }
  void sayState(std::initializer_list<std::uint8_t> taken) {
    ClientTableState state;
    state.gameID = 1;
    state.maxSeats = 2;
    state.bigBlind = units(2);
    state.minBuyIn = units(40);
    state.maxBuyIn = units(100);
    for (const std::uint8_t number : taken) state.seats.push_back(seatOf("Other", number, 0, UserState::Waiting));
    say<SrvTableState>(state);
  }

  // The tournament's.

  void sayStatus(TOUR_NAMES::TourStatus status) { say<SrvTourTourneyStatus>(status, kTour); }
  /// The player is at a table with so many units.
  void seat(std::uint32_t tableID, std::int64_t stack, UserState state = UserState::Waiting) {
    GameStartupInfo info;
    info.gameID = tableID;
    info.tournamentID = kTour;
    say<SrvTourMoveToTable>(tableID);
    say<SrvTakeSeatInfo>(info);
    ClientTableState table;
    table.gameID = tableID;
    table.maxSeats = 9;
    table.ownSeat = 4;
    table.smallBlind = units(10);
    table.bigBlind = units(20);
    table.seats.push_back(seatOf("Player", 4, stack, state));
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
  void onOpen(TcpSession& session) override { session_ = &session; }
  void onCommand(TcpSession& session, CommandHandle<> command) override {
    session_ = &session;
    const std::string name(CommandFactory::find(*command)->name());
    if (name == "ClHandShake") {
      say<SrvHandShaked>();
      return session.setState(SessionState::ShakenHands);
    }
    if (name == "ClLogon") {
      say<SrvLogonOk>("Player", "", false, RealMoneyAcc(), true);
      session.setState(SessionState::Seated);
      if (loggedOn) loggedOn();
      return;
    }
    if (name == "ClConnectGame") return sayState({0, 1});
    if (name == "ClPing") return say<SrvPing>(0);
    if (name == "ClBye") return;
    if (const auto* request = dynamic_cast<const ClTourRegister*>(command.get())) password = request->password();
    if (const auto* request = dynamic_cast<const ClGetUpdateInfo*>(command.get())) {
      versions = {request->getTablesVer(), request->getPlayersVer(), request->getTextVer(), request->prizeVersion(),
                  request->getFundVer()};
    }
    if (const auto* accept = dynamic_cast<const ClAcceptInvite*>(command.get())) {
      reserveID = accept->reserveID();
      money = accept->money();
    }
    heard.push_back(name);
    if (answer) answer(name);
  }

  asio::io_context& context_;
  TcpServer server_;
  TcpSession* session_ = nullptr;
};

class BotTest : public testing::Test {
 protected:
  BotTest() {
    settings.player.server = server.endpoint();
    settings.player.name = "Player";
    settings.player.password = "secret";
    settings.player.sitsDown = true;
    settings.player.reconnects = 3;
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
  std::optional<PlayerEnd> howItEnds() {
    server.runUntil([&] { return end.has_value(); });
    return end;
  }
  const TablePicture& table() const { return bot->client().picture(); }

  asio::io_context context{1};
  MadeServer server{context};
  BotSettings settings;
  std::optional<PlayerEnd> end;
  std::string why;
  std::optional<Bot> bot;
};

class WaitingBot : public BotTest {
 protected:
  WaitingBot() { settings.player.waits = true; }
};

TEST_F(WaitingBot, QueuesAtAFullTableAndTakesTheInvitationWithoutAskingForASeatBeside) {
  comeIn();
  ASSERT_TRUE(server.hears(1));
  server.breakConnection();  // which ends the wait, too
  ASSERT_TRUE(server.hears(2));
  EXPECT_THAT(server.heard, ElementsAre("ClAddToWaitList", "ClAddToWaitList"));
  // While it waits, and while it is invited, a new state of the table is no reason to ask again.
  server.say<SrvAddToWaitListOk>(1u);
  server.sayState({0, 1});
  server.say<SrvUserStateOnTable>(SeatID(1), "Player", kZeroMoney, UserState::Reserved);
  server.say<SrvWaitList>(1u, "0815");
  ASSERT_TRUE(server.hears(3));
  EXPECT_EQ(server.reserveID, "0815");
  EXPECT_EQ(server.money, units(100));
  server.sayState({0});
  server.say<SrvSitOk>(SeatID(1));
  server.say<SrvUserStateOnTable>(SeatID(1), "Player", units(100), UserState::Waiting);
  ASSERT_TRUE(server.runUntil([&] { return table().ownSeat() != nullptr; }));
  EXPECT_FALSE(bot->client().invitation());
  bot->leave();
  ASSERT_TRUE(server.hears(4));
  EXPECT_THAT(server.heard, ElementsAre("ClAddToWaitList", "ClAddToWaitList", "ClAcceptInvite", "ClLeaveSeat"));
}

TEST_F(WaitingBot, GoesWhenThereWillBeNoSeatAndFailsWhenItMayNotWait) {
  comeIn();
  ASSERT_TRUE(server.hears(1));
  server.say<SrvAddToWaitListOk>(1u);
  server.say<SrvRemoveFromWaitListOk>(1u);
  EXPECT_EQ(howItEnds(), PlayerEnd::Left);

  server.answer = [&](std::string_view) { server.say<SrvAddToWaitListError>(1u); };
  comeIn();
  EXPECT_EQ(howItEnds(), PlayerEnd::Refused);
}

class TourBot : public BotTest {
 protected:
  TourBot() {
    settings.player.tournamentID = kTour;
    settings.player.tournamentPassword = "open";
    settings.player.registersForTour = true;
  }
  /// The server answers the registration so, and what comes to it as well when the player has a table.
  void answerWith(RegisterReason reason, std::uint32_t tableID = 0) {
    server.answer = [this, reason, tableID](std::string_view name) {
      if (name == "ClTourRegister") {
        server.say<SrvTourRegisterResult>(reason, kTour, TourMoneyChooser::empty());
        if (reason == RegisterReason::Registered) server.sayStatus(Registering);
      }
      if (name == "ClMoveMe2MyTable" && tableID != 0) server.seat(tableID, 700, UserState::SittingOut);
    };
  }
  void tellAtLogon(TOUR_NAMES::TourStatus status) {
    server.loggedOn = [this, status] {
      if (status != None) server.sayStatus(status);
    };
  }
  void isRegistered() {
    answerWith(RegisterReason::Registered);
    comeIn();
    ASSERT_TRUE(server.runUntil([&] { return bot->client().isRegistered(); }));
  }
  void isDrawn() {
    server.sayStatus(Prestarted);
    server.seat(101, 1500);
    ASSERT_TRUE(server.runUntil([&] { return bot->client().isAtTable(); }));
  }
  /// As comeIn(), and plays at a table.
  void play() {
    isRegistered();
    server.answer = nullptr;
    isDrawn();
    server.heard.clear();
  }
  void seesHand() {
    server.beginHand(1);
    ASSERT_TRUE(server.runUntil([&] { return table().state().handNumber == 1; }));
    EXPECT_FALSE(end);
  }
};

TEST_F(TourBot, RegistersIsBroughtFromTableToTableAndGoesWhenItIsOut) {
  isRegistered();
  EXPECT_EQ(server.password, "open");
  EXPECT_TRUE(bot->client().isSettled());
  EXPECT_FALSE(bot->client().isAtTable()) << "there is none before the draw";
  isDrawn();
  server.say<SrvLevelSwitch>(units(20), units(40), std::int16_t{2}, 60, TOUR_NAMES::SwitchType::ByTime, true);
  ASSERT_TRUE(server.runUntil([&] { return table().state().bigBlind == units(40); }));
  // It goes from one table, then it is at the next, and has done nothing for that.
  server.say<SrvUserStateOnTable>(SeatID(4), "Player", RealMoneyType(), UserState::Empty);
  server.seat(102, 900);
  ASSERT_TRUE(server.runUntil([&] { return table().state().gameID == 102; }));
  EXPECT_EQ(table().total(), units(900));
  EXPECT_THAT(server.heard, ElementsAre("ClTourRegister"));
  server.say<SrvTourPlayerFinished>("You are out: place 3.");
  EXPECT_EQ(howItEnds(), PlayerEnd::Left);
  EXPECT_THAT(server.heard, ElementsAre("ClTourRegister", "ClMoveMe2MyTable")) << "it asks whether it has a table here";
}

TEST_F(TourBot, GoesWhenItIsNotTakenOrAllIsOver) {
  struct Case {
    RegisterReason reason;
    TOUR_NAMES::TourStatus status;  // None: nothing is told at the logon
    PlayerEnd end;
    const char* why;
  };
  for (const Case& each : {Case{RegisterReason::WrongPassword, None, PlayerEnd::Refused, "password"},
                           // It has begun without this player, for whom there is no table.
                           {RegisterReason::AlreadyStarted, None, PlayerEnd::Refused, ""},
                           {RegisterReason::AlreadyStarted, Finished, PlayerEnd::Left, ""},
                           // It has neither a table nor a draw to wait for: it is out.
                           {RegisterReason::AlreadyRegistered, None, PlayerEnd::Left, ""}}) {
    answerWith(each.reason);
    tellAtLogon(each.status);
    comeIn();
    EXPECT_EQ(howItEnds(), each.end);
    EXPECT_THAT(why, HasSubstr(each.why));
  }
  // All was played while it was away.
  server.loggedOn = nullptr;
  isRegistered();
  answerWith(RegisterReason::AlreadyStarted);
  server.breakConnection();
  EXPECT_EQ(howItEnds(), PlayerEnd::Left);
}

TEST_F(TourBot, WaitsForTheDrawOrGoesOnAtItsTableWhenItHasRegisteredBefore) {
  answerWith(RegisterReason::AlreadyRegistered);
  tellAtLogon(Registering);
  comeIn();
  ASSERT_TRUE(server.runUntil([&] { return bot->client().isSettled(); }));
  isDrawn();

  // It comes back to another table, sitting out.
  server.heard.clear();
  answerWith(RegisterReason::AlreadyStarted, 102);
  tellAtLogon(Started);
  server.breakConnection();
  ASSERT_TRUE(server.hears(3));
  EXPECT_THAT(server.heard, ElementsAre("ClTourRegister", "ClMoveMe2MyTable", "ClBack"));
  EXPECT_EQ(table().state().gameID, 102u);

  // While it was away the next time it lost its last chips.
  answerWith(RegisterReason::AlreadyStarted);
  server.loggedOn = nullptr;
  server.breakConnection();
  EXPECT_EQ(howItEnds(), PlayerEnd::Left);
}

TEST_F(TourBot, GoesOnWhenItIsOutOfAnotherTournament) {
  play();
  answerWith(RegisterReason::None, 101);
  server.say<SrvTourPlayerFinished>("You are out of another one.");
  ASSERT_TRUE(server.hears(2)) << "and it is back from sitting out";
  seesHand();

  // It goes from both at once: there is a table at the first question, and none at the second.
  server.heard.clear();
  server.answer = [&](std::string_view) {
    if (server.heard.size() == 1) server.seat(101, 900);  // it goes on playing there
  };
  server.say<SrvTourPlayerFinished>("You are out of another one.");
  server.say<SrvTourPlayerFinished>("You are out.");
  EXPECT_EQ(howItEnds(), PlayerEnd::Left);
}

TEST_F(TourBot, TakesItsRegistrationBackBeforeTheDrawAndGoesWhenAllIsOver) {
  isRegistered();
  bot->leave();
  ASSERT_TRUE(howItEnds());
  EXPECT_THAT(server.heard, ElementsAre("ClTourRegister", "ClTourUnregister"));

  // ... also when it does not know yet whether it is registered.
  server.answer = [&](std::string_view name) {
    if (name == "ClTourRegister") bot->leave();
  };
  comeIn();
  ASSERT_TRUE(howItEnds());
  EXPECT_THAT(server.heard, ElementsAre("ClTourRegister", "ClTourUnregister"));

  play();
  server.say<SrvTourTourneyStatus>(Finished, kTour + 1);
  server.sayStatus(Started);
  seesHand();
  server.sayStatus(Finished);  // it has won
  EXPECT_EQ(howItEnds(), PlayerEnd::Left);
  EXPECT_THAT(server.heard, IsEmpty()) << "there is nothing to take back any more";
}

TEST_F(TourBot, BuysAsOftenAsItMayAndTheAddOnOnce) {
  settings.rebuys = 1;
  settings.addsOn = true;
  play();
  using Reason = SrvGetExtraMoneyReply::Reason;
  const auto broke = [&] { server.say<OutOfMoney>(RealMoneyType(), SrvErrorCode::NotEnoughMoney); };
  const auto reply = [&](ExtraMoneyRequest type, Reason reason, bool flag) {
    server.say<SrvGetExtraMoneyReply>(type, reason, 0u, flag);
  };
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
  reply(ExtraMoneyRequest::AddOn, Reason::Done, true);
  server.say<SrvTourStartInfo>(SrvTourStartInfo::TimeBreakSpecialPlayerCountValue, 300);
  ASSERT_TRUE(server.runUntil([&] { return bot->hasAddedOn(); }));
  server.sayStatus(Finished);
  ASSERT_TRUE(howItEnds());
  EXPECT_THAT(server.heard, ElementsAre("ClGetExtraMoney", "ClGetExtraMoney", "ClGetExtraMoney"));
}

TEST_F(TourBot, KeepsThePictureUpToDateHandByHand) {
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
