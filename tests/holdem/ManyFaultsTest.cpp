#include "Place.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace poker::holdem {
namespace {

using namespace std::chrono_literals;
using test::Place;

/// Somebody who looks on and notes how long each turn stood.
class TurnWatch final : public PlayerEvents {
 public:
  Clock::duration longest{};

 private:
  void onTurnOf(SeatID, std::chrono::seconds) override { asked_ = Clock::now(); }
  void onAction(const SrvUserActionNotify&, const ClientSeatState&) override {
    if (asked_ != Clock::time_point()) longest = std::max(longest, Clock::now() - std::exchange(asked_, {}));
  }
  Clock::time_point asked_;
};

TEST(ManyFaults, LostAndReplacedConnectionsNeverStallTheTableNorCostAChip) {
  constexpr unsigned kPlayers = 9;
  constexpr auto kReplyTime = 300ms;
  ServerSettings settings = test::quickServer(0, 3);
  settings.limits.lastWords = 200ms;
  TableSettings& table = settings.house.tables[0];
  table.replyTime = kReplyTime;
  table.keepSeat = 600ms;
  table.rebuyTime = 300ms;
  table.lastSitting = {};
  Place place(settings);

  std::mt19937_64 random(11);
  std::vector<std::unique_ptr<Bot>> bots(kPlayers);
  std::vector<bool> over(kPlayers);
  const auto start = [&](unsigned i) {
    BotSettings bot = place.bot(i);
    bot.player.reconnects = 1'000'000;
    over[i] = false;
    bots[i] = std::make_unique<Bot>(place.context, bot, [&, i](PlayerEnd, std::string_view) { over[i] = true; });
    bots[i]->start();
  };
  for (unsigned i = 0; i < kPlayers; ++i) start(i);
  TurnWatch watch;
  PlayerSettings looksOn = place.bot(20).player;
  looksOn.sitsDown = false;
  PlayerClient onlooker(place.context, looksOn, watch);
  onlooker.start();

  std::vector<std::unique_ptr<Bot>> stale;  // bots whose place was taken by a newer connection
  std::array<int, 4> faults{};
  const auto isEnough = [&] {
    return place.table().handsPlayed() >= 200 && place.table().turns().timedOut >= 5 &&
           *std::min_element(faults.begin(), faults.end()) >= 10;
  };
  Clock::time_point next = Clock::now() + 300ms;
  ASSERT_TRUE(place.runUntil(
      [&] {
        if (Clock::now() < next) return isEnough();
        next = Clock::now() + 10ms;
        const auto i = static_cast<unsigned>(drawBelow(random, kPlayers));
        if (over[i] || bots[i] == nullptr) return start(i), false;
        const auto fault = drawBelow(random, 4);
        ++faults[fault];
        if (fault == 0) bots[i]->client().breakConnection();  // comes back by itself
        if (fault == 1) bots[i].reset();                      // the program is killed, and started again later
        if (fault == 2) bots[i]->leave();
        if (fault == 3) {  // comes back on a new connection while the old one has not been seen to end
          stale.push_back(std::move(bots[i]));
          start(i);
          if (stale.size() > 5) stale.erase(stale.begin());
        }
        return false;
      },
      std::chrono::seconds(120)));
  // Machines are busy at times; but nothing waits for two of them.
  EXPECT_LT(watch.longest, kReplyTime + 290ms);

  place.server.drain();
  for (auto& bot : bots) {
    if (bot != nullptr) bot->leave();
  }
  ASSERT_TRUE(place.runUntil([&] { return place.table().isIdle(); }));
  const Dealer::Turns& turns = place.table().turns();
  EXPECT_EQ(turns.asked, turns.answered + turns.timedOut + turns.left);
  EXPECT_EQ(place.bank().audit().difference(), kZeroMoney);
  // Nobody's chips are anywhere but in the own account and on the own seat.
  std::set<std::string> seated;
  for (const SeatedPlayer& player : place.bank().seated(1)) EXPECT_TRUE(seated.insert(player.name).second);
}

}  // namespace
}  // namespace poker::holdem
