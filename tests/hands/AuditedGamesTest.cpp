// What the tool makes of the hands of the example's server, which are sound: nothing to find, and the very hands that the
// server itself keeps.

#include "Kept.h"

#include <examples/holdem/game/Deck.h>
#include <examples/holdem/server/history/RecordStory.h>
#include <examples/holdem/server/tournament/BlindLevels.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace poker {
namespace {

using namespace std::chrono_literals;
using holdem::Bot;
using holdem::BotSettings;
using holdem::drawBelow;
using holdem::PlayerClient;
using holdem::PlayerEnd;
using holdem::PlayerEvents;
using holdem::PlayerSettings;
using holdem::TableSettings;
using holdem::test::Place;
using holdem::test::quickServer;
using holdem::test::scaled;
using test::Audited;

/// Judges while the server plays, and compares each hand with the server's own record of it.
class LiveAudit final : public holdem::FrameObserver {
 public:
  Audited audited;
  holdem::Bank* bank = nullptr;
  std::uint64_t comparedEach = 1;
  std::uint64_t asServer = 0;  // compared
  std::uint64_t asPlayers = 0;

  LiveAudit() {
    audited.onHand = [this](const RecordedHand& hand) {
      if (bank != nullptr && hand.isWhole() && hand.number() % comparedEach == 0) compare(hand);
    };
  }
  void finish() {
    audited.finish();
    EXPECT_EQ(audited.lines(), "");
  }

 private:
  void onFrame(const CapturedFrame& frame, const FrameEnds&) override { audited.take(frame); }

  void compare(const RecordedHand& hand) {
    const auto record = bank->handRecord(hand.number());
    if (!record) return;  // not written when its last words are sent
    HandStory server = hand.story();
    for (const HandStory::Player& player : server.players) {
      const HandStory own = holdem::storyOf(*record, player.name);
      for (const HandStory::Player& kept : own.players) {
        if (kept.seat != player.seat) continue;
        const bool isTold = player.cards.at(0).visibility() != Card::Visibility::Hidden;
        if (isTold) {
          EXPECT_EQ(kept.cards, player.cards) << "hand " << hand.number();
        }
      }
      auto seen = hand.storyOf(std::string_view(player.name));
      if (!seen) continue;
      expectSame(*seen, own);
      ++asPlayers;
    }
    // What is left without the cards that nobody showed is what everybody knows.
    for (HandStory::Player& player : server.players) {
      for (Card& card : player.cards) {
        if (card.visibility() != Card::Visibility::Shown) card = Card();
      }
    }
    server.tellsAllDealt = false;
    expectSame(server, holdem::storyOf(*record, ""));
    ++asServer;
  }
  static void expectSame(HandStory& seen, const HandStory& kept) {
    EXPECT_LE(std::abs(*seen.began.toTimeT() - *kept.began.toTimeT()), 1);  // seconds
    seen.began = kept.began;
    EXPECT_EQ(toText(seen), toText(kept));
  }
};

std::unique_ptr<Bot> startBot(
    Place& place, BotSettings settings, Bot::Ended ended = [](PlayerEnd, std::string_view) {}) {
  auto bot = std::make_unique<Bot>(place.context, std::move(settings), std::move(ended));
  bot->start();
  return bot;
}

class Quiet final : public PlayerEvents {};

TEST(AuditedGames, FindsNothingAtRingTables) {
  const std::uint64_t hands = scaled(3400);
  constexpr unsigned kTables = 3;
  constexpr unsigned kPlayersEach = 5;
  holdem::ServerSettings settings = quickServer(hands, 3);
  for (unsigned i = 1; i < kTables; ++i) {
    TableSettings& table = settings.house.tables.emplace_back(settings.house.tables[0]);
    table.gameID += i;
    table.name = "Table \"" + std::to_string(i) + '"';
    table.seats = 6;
    if (i == 1) table.stakes.limit = LimitType::FixedLimit;
    if (i == 2) table.stakes.rake = {333, RealMoneyType::fromHundredths(77)};
  }
  LiveAudit live;
  Place place(settings, &live);
  live.bank = &place.bank();
  live.comparedEach = 3;
  std::vector<std::unique_ptr<Bot>> bots;
  Quiet quiet;
  std::vector<std::unique_ptr<PlayerClient>> onlookers;
  for (unsigned table = 0; table < kTables; ++table) {
    for (unsigned i = 0; i < kPlayersEach; ++i) {
      BotSettings bot = place.bot(table * 20 + i);
      bot.player.seat = static_cast<std::uint8_t>(i);
      bot.player.gameID = settings.house.tables[table].gameID;
      bot.player.buyIn = RealMoneyType::fromHundredths(10'000 + 1'337 * (i + 1));
      bots.push_back(startBot(place, bot));
    }
    PlayerSettings looksOn = place.bot(200 + table).player;
    looksOn.sitsDown = false;
    looksOn.gameID = settings.house.tables[table].gameID;
    onlookers.push_back(std::make_unique<PlayerClient>(place.context, looksOn, quiet));
    onlookers.back()->start();
  }
  ASSERT_TRUE(place.runUntil([&] { return place.ended; }, 200s));
  live.finish();
  EXPECT_GE(live.audited.hands, hands * kTables - kTables);
  EXPECT_GE(live.asServer, hands * kTables * 9 / 30);
  EXPECT_GE(live.asPlayers, hands * kTables * kPlayersEach * 7 / 30);
}

TEST(AuditedGames, FindsNothingWhereConnectionsBreakAndComeBack) {
  constexpr unsigned kPlayers = 7;
  holdem::ServerSettings settings = quickServer(0, 3);
  settings.limits.lastWords = 200ms;
  TableSettings& table = settings.house.tables[0];
  table.replyTime = 200ms;
  table.keepSeat = 400ms;
  table.rebuyTime = 200ms;
  table.lastSitting = {};
  LiveAudit live;
  Place place(settings, &live);
  live.bank = &place.bank();
  std::mt19937_64 random(5);
  std::vector<std::unique_ptr<Bot>> bots(kPlayers);
  std::vector<std::unique_ptr<Bot>> stale;  // whose place was taken by a newer connection
  std::vector<bool> over(kPlayers);
  const auto start = [&](unsigned i) {
    BotSettings bot = place.bot(i);
    bot.player.reconnects = 1'000'000;
    over[i] = false;
    bots[i] = startBot(place, bot, [&, i](PlayerEnd, std::string_view) { over[i] = true; });
  };
  for (unsigned i = 0; i < kPlayers; ++i) start(i);
  auto next = holdem::Clock::now() + 200ms;
  const std::uint64_t hands = scaled(400);
  ASSERT_TRUE(place.runUntil(
      [&] {
        if (holdem::Clock::now() < next) return place.table().handsPlayed() >= hands;
        next = holdem::Clock::now() + 10ms;
        const auto i = static_cast<unsigned>(drawBelow(random, kPlayers));
        if (over[i] || bots[i] == nullptr) {
          start(i);
          return false;
        }
        switch (drawBelow(random, 4)) {
          case 0:
            bots[i]->client().breakConnection();
            break;
          case 1:
            bots[i].reset();
            break;
          case 2:
            bots[i]->leave();
            break;
          default:
            stale.push_back(std::move(bots[i]));
            start(i);
            if (stale.size() > 5) stale.erase(stale.begin());
        }
        return false;
      },
      60s + hands * 100ms));
  bots.clear();
  stale.clear();
  live.finish();
  EXPECT_GE(live.audited.hands, hands / 2);
  EXPECT_GT(live.asPlayers, hands);
}

class TournamentAudit : public ::testing::TestWithParam<unsigned> {};

TEST_P(TournamentAudit, FindsNothing) {
  constexpr unsigned kBots = 24;
  holdem::ServerSettings settings = quickServer(0, 2);
  settings.house.tables.clear();
  for (const LimitType limit : {LimitType::NoLimit, LimitType::FixedLimit}) {
    holdem::TourSettings& tour = settings.house.tournaments.emplace_back();
    tour.name = limit == LimitType::NoLimit ? "Sunday" : "Monday";
    tour.limit = limit;
    tour.seats = 6;
    tour.maxPlayers = tour.startWith = kBots;
    tour.buyIn = RealMoneyType::fromUnits(10);
    tour.chips = RealMoneyType::fromUnits(600);
    tour.levels = holdem::usualLevels({RealMoneyType::fromUnits(10), RealMoneyType::fromUnits(20)});
    tour.switchType = TOUR_NAMES::SwitchType::ByHands;
    tour.levelLength = 4;
    tour.rebuys = 2;
    tour.rebuyLevels = 2;
    tour.rebuyPrice = RealMoneyType::fromUnits(5);
    tour.rebuyChips = RealMoneyType::fromUnits(600);
    tour.seatingTime = tour.handPause = {};
    tour.rebuyTime = 100ms;
    tour.absentTime = 50ms;
    tour.seed = GetParam();
  }
  LiveAudit live;
  Place place(settings, &live);
  live.bank = &place.bank();
  std::mt19937 random(GetParam());
  std::vector<std::unique_ptr<Bot>> bots;
  for (unsigned i = 0; i < 2 * kBots; ++i) {
    BotSettings bot = place.bot(i);
    bot.player.tournamentID = place.server.house().tournaments().all()[i / kBots]->id();
    bot.player.registersForTour = true;
    bot.player.reconnects = 100;
    bot.rebuys = i % 3;
    bot.seed = GetParam() * 100 + i;
    bots.push_back(startBot(place, bot));
  }
  auto next = holdem::Clock::now() + 100ms;
  ASSERT_TRUE(place.runUntil(
      [&] {
        if (holdem::Clock::now() >= next) {
          next = holdem::Clock::now() + 30ms;
          bots[random() % bots.size()]->client().breakConnection();
        }
        const auto& all = place.server.house().tournaments().all();
        return std::all_of(all.begin(), all.end(), [](const auto& tour) { return tour->isOver(); });
      },
      100s));
  live.finish();
  EXPECT_GT(live.audited.hands, 60u);
  EXPECT_GT(live.asPlayers, 200u);
}

INSTANTIATE_TEST_SUITE_P(Seeds, TournamentAudit, ::testing::Range(0u, 6u));

}  // namespace
}  // namespace poker
