#pragma once

#include <examples/holdem/shared/Endpoint.h>
#include <examples/holdem/siege/Report.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace poker::holdem {

struct SiegeSettings {
  std::size_t connections = 500;  ///< in all: players, guests who do nothing, attackers
  double attackers = 0.1;         ///< the share of these that attack
  std::size_t tables = 4;         ///< of six honest players each; one more is played through the fault proxy
  std::chrono::milliseconds pause = std::chrono::milliseconds(40);  ///< that a player thinks
  std::chrono::seconds seconds{60};                                 ///< that is measured, half of it under attack
  unsigned rounds = 3;                                              ///< quiet time and attack in turn
  unsigned kills = 1;  ///< so often the server is killed, at the end of a round; needs a program
  /// That the server leaves to a hand-shake and to a whole frame; zero: its own 5 and 10 seconds.
  std::chrono::milliseconds patience{};
  std::uint64_t seed = 1;
  std::vector<std::string> attacks;  ///< names of attackKinds(); empty: all
  bool besiegesClient = true;
  bool playsThroughFaults = true;

  std::string program;             ///< the server's program; it is started on a port of the system's choosing
  std::optional<Endpoint> server;  ///< in its place one that runs, with tables of six from number 1 on
  std::string folder;              ///< for its bank and logs

  // Bounds; 0 for none.
  double latencyFactor = 2;                  ///< p99 under attack against the quiet one
  std::chrono::milliseconds latencyFloor{};  ///< as a p99 fine in any case
  std::size_t growth = 16 * 1024 * 1024;     ///< bytes of the server's memory, beyond a tenth of it
  bool checksMemory = true;                  ///< false under sanitizers
};

/// Builds up the crowd and the tables, attacks in rounds, kills and restarts the server, and looks at what is left.
/// @param tell   gets a line when something begins, and how far it is
/// @param stops  true: ends as soon as it is in order to do so
/// @throws std::exception  the siege itself cannot be
Report besiege(const SiegeSettings& settings, const std::function<void(const std::string&)>& tell,
               const std::atomic<bool>& stops);

}  // namespace poker::holdem
