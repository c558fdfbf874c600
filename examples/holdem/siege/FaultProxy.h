#pragma once

#include <examples/holdem/shared/Endpoint.h>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

namespace poker::holdem {

/// What a proxy does to the bytes of one direction: how probable each is for a portion as the system hands it over, 0 to 1.
/// The first three lose nothing; each of the others ends the connection or the sense of its bytes.
struct Faults {
  double delay = 0;     ///< waits up to `longestDelay` before it goes on
  double split = 0;     ///< is passed on in pieces of a few bytes
  double coalesce = 0;  ///< waits for what comes behind it, and goes on together with that
  double truncate = 0;  ///< loses its end, and the connection is closed in order behind it
  double corrupt = 0;   ///< one byte is another one
  double reset = 0;     ///< the connection is reset on both sides
  std::chrono::milliseconds longestDelay = std::chrono::milliseconds(20);
};

enum class Fault : std::uint8_t { Delay, Split, Coalesce, Truncate, Corrupt, Reset };
inline constexpr std::size_t kFaults = 6;
/// "delay" and so on.
const char* toText(Fault fault);

/// Stands between clients and a server, and damages what they say to each other. Which faults a connection meets follows
/// from the seed and the connection's number; which bytes they meet, from how the system cuts the stream. All calls come
/// from the thread that runs the io_context.
class FaultProxy {
 public:
  /// Listens on the loopback, at a port of the system's choosing.
  /// @throws std::system_error
  FaultProxy(asio::io_context& context, Endpoint server, const Faults& toServer, const Faults& toClient,
             std::uint64_t seed);
  /// Resets all connections.
  ~FaultProxy();
  FaultProxy(const FaultProxy&) = delete;
  FaultProxy& operator=(const FaultProxy&) = delete;

  std::uint16_t port() const { return acceptor_.local_endpoint().port(); }
  std::uint64_t connections() const { return accepted_; }
  /// How often each fault was played.
  const std::array<std::uint64_t, kFaults>& played() const { return *played_; }

 private:
  class Link;

  void acceptNext();

  asio::io_context& context_;
  asio::ip::tcp::endpoint server_;
  Faults toServer_, toClient_;
  std::mt19937_64 seeds_;
  std::uint64_t accepted_ = 0;
  std::shared_ptr<std::array<std::uint64_t, kFaults>> played_ = std::make_shared<std::array<std::uint64_t, kFaults>>();
  struct Alive {};
  std::shared_ptr<Alive> alive_ = std::make_shared<Alive>();  // what the accept that is under way holds
  asio::ip::tcp::acceptor acceptor_;
  std::vector<std::weak_ptr<Link>> links_;
};

}  // namespace poker::holdem
