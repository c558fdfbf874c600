#pragma once

#include "Sanitized.h"

#include <LogUtil/Log.h>
#include <examples/holdem/client/bots/Bot.h>
#include <examples/holdem/server/Server.h>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace poker::holdem::test {

/// How many hands to play: HOLDEM_HANDS of them, or as many of these as the build can afford.
inline std::uint64_t scaled(std::uint64_t hands) {
  if (const char* wanted = std::getenv("HOLDEM_HANDS")) return std::strtoull(wanted, nullptr, 10);
  return kSanitized ? hands / 20 : hands;
}

inline ServerSettings quickServer(std::uint64_t hands, std::size_t players) {
  if (std::getenv("HOLDEM_LOG") == nullptr) Log::setSink([](const LogRecord&) {});
  ServerSettings settings;
  settings.limits.rate.framesPerSecond = 0;
  settings.house.bank = {":memory:", 1};
  settings.house.gift = RealMoneyType::fromUnits(100'000);
  TableSettings table;
  table.handPause = table.handPause.zero();
  table.startWith = players;
  table.mostHands = hands;
  table.stakes.rake = {500, RealMoneyType::fromUnits(3)};
  table.seed = 1;
  settings.house.tables = {table};
  return settings;
}

/// A server and its event loop, which the clients of a test share.
struct Place {
  asio::io_context context{1};
  Server server;
  bool ended = false;

  explicit Place(ServerSettings settings, FrameObserver* observer = nullptr)
      : server(context, std::move(settings), nullptr, observer) {
    server.start([this] { ended = true; });
  }
  RingTable& table() { return *server.house().tables().front(); }
  Bank& bank() { return server.house().bank(); }
  Endpoint endpoint() const { return {"127.0.0.1", server.port()}; }

  /// Runs the loop until it holds.
  /// @return false when it does not in that time
  bool runUntil(const std::function<bool()>& holds, std::chrono::milliseconds within = std::chrono::seconds(30)) {
    const auto deadline = Clock::now() + within;
    while (!holds()) {
      if (server.failure()) std::rethrow_exception(server.failure());
      if (context.run_one_until(std::min(deadline, Clock::now() + std::chrono::milliseconds(50))) == 0 &&
          Clock::now() >= deadline) {
        return false;
      }
      if (context.stopped()) context.restart();
    }
    return true;
  }
  BotSettings bot(unsigned number) const {
    BotSettings settings;
    settings.player.server = endpoint();
    settings.player.name = "Player " + std::to_string(number);
    settings.player.password = "secret";
    settings.player.registers = true;
    settings.player.sitsDown = true;
    settings.player.seat = static_cast<std::uint8_t>(number);
    settings.player.buyIn = RealMoneyType::fromUnits(200);
    settings.style = static_cast<Style>(number % 3);
    settings.seed = number;
    settings.rebuys = 1'000'000;
    settings.usesAdvance = true;
    settings.postsBlinds = number % 2 == 0;
    return settings;
  }
};

}  // namespace poker::holdem::test
