#include "Guest.h"
#include "Place.h"

#include <examples/holdem/server/capture/FrameTap.h>
#include <hostkit/Decode.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace poker::holdem {
namespace {

using test::Place;

/// Keeps all frames.
class Keeper final : public FrameObserver {
 public:
  struct Kept {
    std::string command;
    std::string connection;
    std::string table;
    std::uint64_t hand;
    std::uint16_t clientPort, serverPort;
    CommandHandle<> object;
  };
  std::vector<Kept> frames;
  std::int64_t lastTime = 0;

  void onFrame(const CapturedFrame& frame, const FrameEnds& ends) override {
    EXPECT_EQ(frame.number, frames.size() + 1);
    EXPECT_GE(*frame.time, lastTime);
    lastTime = *frame.time;
    DecodeResult decoded = decodeCommand(frame.bytes.subspan(kLengthSlot), {*frame.direction, true, false});
    ASSERT_TRUE(decoded) << decoded.error.toString();
    frames.push_back({std::string(CommandFactory::find(*decoded.command)->name()), std::string(frame.connection),
                      std::string(frame.table), frame.hand, ends.client.port, ends.server.port,
                      std::move(decoded.command)});
  }
};

// Each client hears of each hand at its table from number to showdown under that number, and of none at any other time.
TEST(FrameTap, TellsTableAndHandOfEveryFrame) {
  ServerSettings settings = test::quickServer(6, 3);
  settings.house.tables.push_back(settings.house.tables[0]);
  settings.house.tables[1].gameID = 8;
  settings.house.tables[0].name = settings.house.tables[1].name = "Twin";
  settings.house.tables[0].gameID = 7;
  Keeper keeper;
  Place place(settings, &keeper);
  std::vector<std::unique_ptr<Bot>> bots;
  for (unsigned i = 0; i < 6; ++i) {
    BotSettings bot = place.bot(i);
    bot.player.gameID = i % 2 == 0 ? 7 : 8;
    bots.push_back(std::make_unique<Bot>(place.context, bot, [](PlayerEnd, std::string_view) {}));
    bots.back()->start();
  }
  ASSERT_TRUE(place.runUntil([&] { return place.ended; }));

  std::map<std::string, std::string> tableOf;               // by connection
  std::map<std::string, std::uint64_t> handOf;              // by connection
  std::map<std::string, std::set<std::uint64_t>> playedAt;  // by table
  for (const auto& frame : keeper.frames) {
    SCOPED_TRACE(frame.command + " to or from " + frame.connection);
    EXPECT_EQ(frame.connection, "127.0.0.1:" + std::to_string(frame.clientPort));
    EXPECT_EQ(frame.serverPort, place.server.port());
    std::string& table = tableOf.try_emplace(frame.connection, "lobby").first->second;
    std::uint64_t& hand = handOf[frame.connection];
    if (frame.command == "SrvConnectGameOK") table = frame.table;
    if (const auto* hint = dynamic_cast<const SrvUpdateHintText*>(frame.object.get())) {
      hand = std::stoull(hint->hint());
      playedAt[frame.table].insert(hand);
    }
    if (frame.command == "SrvErrorDisconnected") continue;  // maybe to one that has left
    EXPECT_EQ(frame.table, table);
    // What clients say in between may come before or after the hand's end.
    if (frame.command.starts_with("Srv") && table != "lobby") {
      EXPECT_EQ(frame.hand, hand);
    }
    if (table == "lobby") {
      EXPECT_EQ(frame.hand, 0u);
    }
    if (frame.command == "SrvTUShowDown") hand = 0;
  }
  ASSERT_EQ(playedAt.size(), 2u);
  EXPECT_THAT(playedAt, testing::UnorderedElementsAre(testing::Pair("Twin", testing::SizeIs(6)),
                                                      testing::Pair("Twin #8", testing::SizeIs(6))));
}

}  // namespace
}  // namespace poker::holdem
