// What the tool makes of the hands of the example's server, which are sound: nothing to find, and the hands that the
// server itself keeps.

#include "Kept.h"

#include <examples/holdem/server/history/RecordStory.h>

#include <memory>
#include <string>
#include <vector>

namespace poker {
namespace {

using holdem::Bot;
using holdem::BotSettings;
using holdem::PlayerEnd;
using holdem::test::Place;
using holdem::test::quickServer;
using holdem::test::scaled;
using test::Audited;

/// Feeds the audit while the server plays.
class LiveAudit final : public holdem::FrameObserver {
 public:
  Audited audited;

 private:
  void onFrame(const CapturedFrame& frame, const FrameEnds&) override { audited.take(frame); }
};

TEST(ManyHandsAudit, FindsNothingAtRingTables) {
  const std::uint64_t hands = scaled(1000);
  holdem::ServerSettings settings = quickServer(hands, 3);
  LiveAudit live;
  Place place(settings, &live);
  std::vector<std::unique_ptr<Bot>> bots;
  for (unsigned i = 0; i < 9; ++i) {
    bots.push_back(std::make_unique<Bot>(place.context, place.bot(i), [](PlayerEnd, std::string_view) {}));
    bots.back()->start();
  }
  ASSERT_TRUE(place.runUntil([&] { return place.ended; }, std::chrono::seconds(200)));
  live.audited.finish();
  EXPECT_EQ(live.audited.hands, hands);
  EXPECT_EQ(live.audited.lines(), "");
}

}  // namespace
}  // namespace poker
