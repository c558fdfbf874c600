#pragma once

#include <examples/holdem/shared/Endpoint.h>
#include <examples/holdem/siege/Frames.h>

#include <asio/io_context.hpp>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace poker::holdem {

/// What attackers know, and share.
struct AttackPlan {
  Endpoint server;
  std::uint64_t seed = 1;
  std::vector<std::string> victims;   ///< names whose passwords are guessed
  std::vector<Bytes> clientFrames;    ///< of every class that clients send
  std::vector<Bytes> serverFrames;    ///< of every class that they receive
  std::string accounts = "Besieger";  ///< what the names of the attackers' own accounts begin with
  std::uint32_t gameID = 1;           ///< the table that they look at
};

/// What the attackers of one kind did, and how it ended.
struct AttackCount {
  std::uint64_t connections = 0;  ///< that came about
  std::uint64_t refused = 0;      ///< that did not
  std::uint64_t cutOff = 0;       ///< that the server ended
  std::uint64_t bytesSent = 0;
  std::uint64_t bytesReceived = 0;
};

/// A kind of attack.
struct AttackKind {
  std::string_view name;
  std::string_view does;     ///< for people
  bool mustBeCutOff = true;  ///< whether the server has to end such connections, given time
};

/// All of them, in the order in which attackers are dealt out.
std::span<const AttackKind> attackKinds();

/// Clients that mean harm: each connects, does what its kind does, and comes again when the server has ended it. All calls
/// come from the thread that runs the io_context.
class Attackers {
 public:
  /// @param kinds  names of attackKinds(); empty: all
  /// @throws std::invalid_argument  for a name that is none
  Attackers(asio::io_context& context, AttackPlan plan, const std::vector<std::string>& kinds);
  /// Closes all connections.
  ~Attackers();
  Attackers(const Attackers&) = delete;
  Attackers& operator=(const Attackers&) = delete;

  /// Sends so many into the field, the kinds in turn; they come within a second.
  void begin(std::size_t attackers);
  /// All go, each as its kind does.
  void end();
  /// Connections that are open now.
  std::size_t open() const;
  const std::map<std::string_view, AttackCount>& counts() const { return counts_; }

  class Attacker;

 private:
  asio::io_context& context_;
  std::shared_ptr<const AttackPlan> plan_;
  std::vector<const AttackKind*> kinds_;
  std::map<std::string_view, AttackCount> counts_;
  std::vector<std::shared_ptr<Attacker>> attackers_;
  std::uint64_t sent_ = 0;
};

}  // namespace poker::holdem
