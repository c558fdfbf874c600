#include "MadeServer.h"

#include <examples/holdem/client/bots/Bot.h>

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

/// A server with a table of two seats, both taken.
class TableServer final : public test::MadeServer {
 public:
  using MadeServer::MadeServer;

  std::string reserveID;  // of the last ClAcceptInvite
  RealMoneyType money;

  void sayState(std::initializer_list<std::uint8_t> taken) {
    ClientTableState state;
    state.gameID = 1;
    state.maxSeats = 2;
    state.bigBlind = RealMoneyType::fromUnits(2);
    state.minBuyIn = RealMoneyType::fromUnits(40);
    state.maxBuyIn = RealMoneyType::fromUnits(100);
    for (const std::uint8_t seat : taken) {
      ClientSeatState& other = state.seats.emplace_back();
      other.seatID = seat;
      other.displayName = "Other";
      other.state = UserState::Waiting;
    }
    say<SrvTableState>(state);
  }

 private:
  bool takesItself(std::string_view name, const PokerCommandI& command) override {
    if (name == "ClConnectGame") sayState({0, 1});
    if (const auto* accept = dynamic_cast<const ClAcceptInvite*>(&command)) {
      reserveID = accept->reserveID();
      money = accept->money();
    }
    return name == "ClConnectGame";
  }
};

struct WaitingBot {
  std::optional<PlayerEnd> end;
  Bot bot;

  WaitingBot(asio::io_context& context, const TableServer& server, unsigned reconnects = 0)
      : bot(context, settings(server, reconnects), [this](PlayerEnd how, std::string_view) { end = how; }) {
    bot.start();
  }
  static BotSettings settings(const TableServer& server, unsigned reconnects) {
    BotSettings settings;
    settings.player.server = server.endpoint();
    settings.player.name = "Waiter";
    settings.player.password = "secret";
    settings.player.sitsDown = settings.player.waits = true;
    settings.player.reconnects = reconnects;
    return settings;
  }
};

TEST(WaitingClient, QueuesAtAFullTableAndTakesTheInvitationWithoutAskingForASeatBeside) {
  asio::io_context context(1);
  TableServer server(context);
  WaitingBot waiter(context, server);
  ASSERT_TRUE(server.hears(1));
  EXPECT_THAT(server.heard, ElementsAre("ClAddToWaitList"));
  // While it waits, and while it is invited, a new state of the table is no reason to ask again.
  server.say<SrvAddToWaitListOk>(1u);
  server.sayState({0, 1});
  server.say<SrvUserStateOnTable>(SeatID(1), "Waiter", kZeroMoney, UserState::Reserved);
  server.say<SrvWaitList>(1u, "0815");
  ASSERT_TRUE(server.hears(2));
  EXPECT_EQ(server.reserveID, "0815");
  EXPECT_EQ(server.money, RealMoneyType::fromUnits(100));
  server.sayState({0});
  server.say<SrvSitOk>(SeatID(1));
  server.say<SrvUserStateOnTable>(SeatID(1), "Waiter", RealMoneyType::fromUnits(100), UserState::Waiting);
  ASSERT_TRUE(server.runUntil([&] { return waiter.bot.client().picture().ownSeat() != nullptr; }));
  EXPECT_FALSE(waiter.bot.client().invitation());
  waiter.bot.leave();
  ASSERT_TRUE(server.hears(3));
  EXPECT_THAT(server.heard, ElementsAre("ClAddToWaitList", "ClAcceptInvite", "ClLeaveSeat"));
}

TEST(WaitingClient, QueuesAnewAfterTheConnectionBroke) {
  asio::io_context context(1);
  TableServer server(context);
  WaitingBot waiter(context, server, 3);
  ASSERT_TRUE(server.hears(1));
  server.breakConnection();
  ASSERT_TRUE(server.hears(2));
  EXPECT_THAT(server.heard, ElementsAre("ClAddToWaitList", "ClAddToWaitList"));
}

TEST(WaitingClient, GoesWhenThereWillBeNoSeatAndFailsWhenItMayNotWait) {
  asio::io_context context(1);
  TableServer server(context);
  WaitingBot waiter(context, server);
  ASSERT_TRUE(server.hears(1));
  server.say<SrvAddToWaitListOk>(1u);
  server.say<SrvRemoveFromWaitListOk>(1u);
  ASSERT_TRUE(server.runUntil([&] { return waiter.end.has_value(); }));
  EXPECT_EQ(*waiter.end, PlayerEnd::Left);

  server.answer = [&](std::string_view name) {
    if (name == "ClAddToWaitList") server.say<SrvAddToWaitListError>(1u);
  };
  WaitingBot refused(context, server);
  ASSERT_TRUE(server.runUntil([&] { return refused.end.has_value(); }));
  EXPECT_EQ(*refused.end, PlayerEnd::Refused);
}

}  // namespace
}  // namespace poker::holdem
