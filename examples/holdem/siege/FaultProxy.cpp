#include <examples/holdem/siege/FaultProxy.h>

#include <asio/buffer.hpp>
#include <asio/steady_timer.hpp>
#include <asio/write.hpp>

#include <algorithm>
#include <utility>

namespace poker::holdem {

using asio::ip::tcp;

const char* toText(Fault fault) {
  static constexpr std::array kNames = {"delay", "split", "coalesce", "truncate", "corrupt", "reset"};
  return kNames[static_cast<std::size_t>(fault)];
}

/// One client's connection and the one to the server, with a pump in each direction.
class FaultProxy::Link : public std::enable_shared_from_this<Link> {
 public:
  Link(tcp::socket client, std::shared_ptr<std::array<std::uint64_t, kFaults>> played, const Faults& toServer,
       const Faults& toClient, std::uint64_t seed)
      : played_(std::move(played)),
        client_(std::move(client)),
        server_(client_.get_executor()),
        up_(client_, server_, toServer, seed),
        down_(server_, client_, toClient, seed + 1) {}

  void start(const tcp::endpoint& server) {
    server_.async_connect(server, [self = shared_from_this()](const std::error_code& failure) {
      if (failure) return self->close();
      std::error_code ignored;
      self->server_.set_option(tcp::no_delay(true), ignored);
      self->client_.set_option(tcp::no_delay(true), ignored);
      self->pump(self->up_);
      self->pump(self->down_);
    });
  }
  void close() {
    std::error_code ignored;
    for (Pump* pump : {&up_, &down_}) {
      pump->timer.cancel();
      pump->from.close(ignored);
    }
  }
  void reset() {
    std::error_code ignored;
    for (Pump* pump : {&up_, &down_}) pump->from.set_option(asio::socket_base::linger(true, 0), ignored);
    close();
  }

 private:
  struct Pump {
    Pump(tcp::socket& from_, tcp::socket& to_, const Faults& faults_, std::uint64_t seed)
        : from(from_), to(to_), faults(faults_), random(seed), timer(from.get_executor()) {}

    bool happens(double probability) { return std::uniform_real_distribution<double>(0, 1)(random) < probability; }
    std::size_t below(std::size_t bound) { return static_cast<std::size_t>(random() % bound); }

    tcp::socket& from;
    tcp::socket& to;
    Faults faults;
    std::mt19937_64 random;
    asio::steady_timer timer;
    std::array<std::uint8_t, 16 * 1024> bytes;
    std::size_t size = 0;     // of what is to be passed on
    std::size_t written = 0;  // of that
    bool splits = false;
    bool ends = false;  // the connection, behind what is to be passed on
  };

  void note(Fault fault) { ++(*played_)[static_cast<std::size_t>(fault)]; }

  void pump(Pump& pump) {
    pump.from.async_read_some(asio::buffer(pump.bytes), [this, self = shared_from_this(), &pump](
                                                            const std::error_code& failure, std::size_t got) {
      if (failure) return end(pump);
      pump.size = got;
      pump.written = 0;
      damage(pump);
    });
  }
  void damage(Pump& pump) {
    const Faults& faults = pump.faults;
    if (pump.happens(faults.reset)) {
      note(Fault::Reset);
      return reset();
    }
    if (pump.happens(faults.corrupt)) {
      note(Fault::Corrupt);
      pump.bytes[pump.below(pump.size)] ^= static_cast<std::uint8_t>(1 + pump.below(255));
    }
    if (pump.happens(faults.truncate)) {
      note(Fault::Truncate);
      pump.size = pump.below(pump.size);
      pump.ends = true;
    }
    pump.splits = pump.happens(faults.split);
    if (pump.splits) note(Fault::Split);
    const bool coalesces = !pump.ends && pump.happens(faults.coalesce);
    const bool delays = pump.happens(faults.delay);
    if (coalesces) note(Fault::Coalesce);
    if (delays) note(Fault::Delay);
    if (!coalesces && !delays) return write(pump);
    const auto longest = static_cast<std::size_t>(std::max<std::int64_t>(faults.longestDelay.count(), 1));
    pump.timer.expires_after(std::chrono::milliseconds(1 + pump.below(longest)));
    pump.timer.async_wait([this, self = shared_from_this(), &pump, coalesces](const std::error_code& cancelled) {
      if (cancelled) return;
      if (coalesces) {
        std::error_code nothingMore;
        pump.from.non_blocking(true, nothingMore);
        pump.size += pump.from.read_some(asio::buffer(pump.bytes) + pump.size, nothingMore);
      }
      write(pump);
    });
  }
  void write(Pump& pump) {
    const std::size_t rest = pump.size - pump.written;
    if (rest == 0) return pump.ends ? end(pump) : this->pump(pump);
    const std::size_t piece = pump.splits ? std::min(rest, 1 + pump.below(8)) : rest;
    asio::async_write(pump.to, asio::buffer(pump.bytes.data() + pump.written, piece),
                      [this, self = shared_from_this(), &pump](const std::error_code& failure, std::size_t done) {
                        if (failure) return close();
                        pump.written += done;
                        write(pump);
                      });
  }
  /// The stream of this direction is over; the other one goes on until it is, too.
  void end(Pump& pump) {
    std::error_code ignored;
    pump.to.shutdown(tcp::socket::shutdown_send, ignored);
    if (pump.ends || std::exchange(oneEnded_, true)) close();
  }

  std::shared_ptr<std::array<std::uint64_t, kFaults>> played_;
  tcp::socket client_, server_;
  Pump up_, down_;
  bool oneEnded_ = false;
};

FaultProxy::FaultProxy(asio::io_context& context, Endpoint server, const Faults& toServer, const Faults& toClient,
                       std::uint64_t seed)
    : context_(context),
      server_(asio::ip::make_address(server.host), server.port),
      toServer_(toServer),
      toClient_(toClient),
      seeds_(seed),
      acceptor_(context, {asio::ip::address_v4::loopback(), 0}) {
  acceptNext();
}

FaultProxy::~FaultProxy() {
  for (const auto& each : links_) {
    if (const auto link = each.lock()) link->reset();
  }
}

void FaultProxy::acceptNext() {
  acceptor_.async_accept(
      context_, [this, alive = std::weak_ptr(alive_)](const std::error_code& failure, tcp::socket client) {
        if (alive.expired()) return;
        if (!failure) {
          ++accepted_;
          const auto link = std::make_shared<Link>(std::move(client), played_, toServer_, toClient_, seeds_());
          std::erase_if(links_, [](const auto& each) { return each.expired(); });
          links_.push_back(link);
          link->start(server_);
        }
        acceptNext();
      });
}

}  // namespace poker::holdem
