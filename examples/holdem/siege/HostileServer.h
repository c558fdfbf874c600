#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace poker::holdem {

/// How a client took what a malicious server did to it.
struct ClientCase {
  std::string name;
  std::string ended;          ///< the client's own word for it; empty: it went on
  double seconds = 0;         ///< that took
  std::size_t peakBytes = 0;  ///< that the process grew by meanwhile, the server's part included
  std::string fault;          ///< what is wrong with that; empty: nothing
};

/// The most that a client may grow by: forty times the longest frame that it takes, and what the server here needs.
inline constexpr std::size_t kMostClientBytes = 48 * 1024 * 1024;

/// Lets the house's client come in, and then does to it each thing that it must survive: bombs, batches in batches, sizes
/// that are not true, endless lists, damaged frames of every class, floods, silence. Takes some seconds.
/// @param checksMemory  false where memory is not that of the client alone (sanitizers)
std::vector<ClientCase> besiegeClient(std::uint64_t seed, bool checksMemory = true);

}  // namespace poker::holdem
