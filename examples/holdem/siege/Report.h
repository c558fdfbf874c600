#pragma once

#include <examples/holdem/siege/Attack.h>
#include <examples/holdem/siege/FaultProxy.h>
#include <examples/holdem/siege/HostileServer.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace poker::holdem {

/// Times from an action to its answer, in microseconds.
struct Latency {
  std::size_t count = 0;
  std::uint32_t p50 = 0, p99 = 0, most = 0;

  static Latency of(std::vector<std::uint32_t> times);
};

/// What the server took of the machine at one moment.
struct Sample {
  double second = 0;  ///< since its start
  std::size_t residentBytes = 0;
  std::size_t descriptors = 0;
  bool attacked = false;
};

/// The straight line that lies nearest to the samples' memory, in bytes a second; 0 for fewer than two.
double slopeOf(const std::vector<Sample>& samples);

/// A server that was killed, and what its bank knew then.
struct Killed {
  std::uint64_t handsConfirmed = 0;  ///< that players had heard the end of
  std::uint64_t handsMissing = 0;    ///< of these
  std::uint64_t accountsMissing = 0;
  std::string difference;  ///< what chips are lost, or came from nowhere: "0.00"
  double backSeconds = 0;  ///< until all were inside again
};

/// What a siege has shown.
struct Report {
  std::uint64_t seed = 0;
  std::size_t connections = 0, tables = 0, attackers = 0;
  double seconds = 0;
  std::size_t heldCalm = 0;      ///< honest connections, at the least, in quiet times
  std::size_t heldAttacked = 0;  ///< and under attack
  std::size_t heldAll = 0;       ///< with those of attackers, at the most
  Latency calm, attacked;
  std::uint64_t hands = 0;
  std::uint64_t honestLost = 0;  ///< honest connections that broke, but for a killed server
  std::map<std::string, AttackCount> attacks;
  std::array<std::uint64_t, kFaults> faults{};
  std::vector<Sample> samples;  ///< of the last server
  double slope = 0;             ///< bytes a second
  std::size_t residentFirst = 0, residentLast = 0, residentMost = 0;
  std::size_t descriptorsCalm = 0, descriptorsLast = 0;
  double cpuShare = 0;  ///< of one core, under attack
  std::vector<Killed> kills;
  std::vector<ClientCase> client;
  std::string ended;                ///< how the server ended when it was asked to
  std::vector<std::string> broken;  ///< bounds that did not hold; empty: all did

  std::string asText() const;
  std::string asJson() const;
};

}  // namespace poker::holdem
