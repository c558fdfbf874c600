#include <examples/holdem/siege/Attack.h>

#include <CommandProcessor/commands/AllCommands.h>
#include <Damage.h>
#include <examples/holdem/shared/Protocol.h>
#include <hostkit/StreamFramer.h>

#include <asio/buffer.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>
#include <asio/write.hpp>

#include <algorithm>
#include <array>
#include <chrono>
#include <random>
#include <stdexcept>
#include <utility>

namespace poker::holdem {

using asio::ip::tcp;
using namespace std::chrono_literals;
using Duration = std::chrono::milliseconds;

namespace {

const std::string kPassword = kSecret;

Bytes handShake() { return frame<ClHandShake>(kProtocolVersion); }
Bytes logon(const std::string& name, const std::string& password) {
  return frame<ClLogon>(name.c_str(), password.c_str(), CommonTypes::HardwareInfo(), nullptr, 0, false, false);
}
Bytes registration(const std::string& name) {
  CommonTypes::NewAccountInfo account;
  account.userName = name;
  account.password = kPassword;
  RawDataHolder nothing;
  return frame<ClMakeNewAccount>(account, nothing, Int2StringSer());
}

}  // namespace

/// The connection of any attacker. It belongs to its own operations, and what its kind does is what the derived class
/// overrides.
class Attackers::Attacker : public std::enable_shared_from_this<Attacker> {
 public:
  Attacker(asio::io_context& context, std::shared_ptr<const AttackPlan> plan, AttackCount& count, std::uint64_t number)
      : plan_(std::move(plan)),
        random_(plan_->seed * 0x9E3779B97F4A7C15u + number),
        number_(number),
        count_(count),
        socket_(context),
        timer_(context) {}
  virtual ~Attacker() = default;

  void start() { again(Duration(below(1000))); }
  void stop() {
    ended_ = true;
    timer_.cancel();
    close();
  }
  bool isOpen() const { return isOpen_; }

 protected:
  const AttackPlan& plan() const { return *plan_; }
  std::uint64_t below(std::uint64_t bound) { return random_() % bound; }
  const Bytes& anyOf(const std::vector<Bytes>& frames) { return frames[below(frames.size())]; }
  std::string ownName() const { return plan_->accounts + ' ' + std::to_string(number_); }

  // What a kind does.

  /// The connection stands.
  virtual void onOpen() = 0;
  /// A whole frame has come.
  virtual void onFrame(std::span<const std::uint8_t>) {}
  /// What was sent last is with the system.
  virtual void onSent() {}
  virtual bool reads() const { return true; }
  /// Between the end of a connection and the next one.
  virtual Duration pause() { return Duration(100 + below(200)); }

  // What it has for that.

  /// One after the other; onSent() tells when there may be a next one.
  void send(Bytes bytes) {
    if (!isOpen_) return;
    output_ = std::move(bytes);
    asio::async_write(
        socket_, asio::buffer(output_),
        [self = shared_from_this(), connection = connection_](const std::error_code& failure, std::size_t) {
          if (connection != self->connection_ || !self->isOpen_) return;
          if (failure) return self->onEnd();
          self->count_.bytesSent += self->output_.size();
          self->onSent();
        });
  }
  /// Calls it later, unless the connection has ended by then.
  void later(Duration time, std::function<void()> call) {
    timer_.expires_after(time);
    timer_.async_wait(
        [self = shared_from_this(), connection = connection_, call = std::move(call)](const auto& cancelled) {
          if (!cancelled && connection == self->connection_ && self->isOpen_) call();
        });
  }
  /// Ends it, with a reset if that is wanted, and comes again.
  void hangUp(bool resets) {
    if (!isOpen_) return;
    std::error_code ignored;
    if (resets) socket_.set_option(asio::socket_base::linger(true, 0), ignored);
    close();
    if (!ended_) again(pause());
  }

 private:
  void again(Duration time) {
    timer_.expires_after(time);
    timer_.async_wait([self = shared_from_this()](const std::error_code& cancelled) {
      if (!cancelled && !self->ended_) self->connect();
    });
  }
  void connect() {
    std::error_code failure;
    socket_ = tcp::socket(socket_.get_executor());
    socket_.open(tcp::v4(), failure);
    if (!failure) {
      // So many come and go that the ports of one address would run out: every address of 127.0.0.0/8 is the loopback.
      const asio::ip::address_v4 own(0x7F000002u + static_cast<std::uint32_t>(number_ % 200));
      socket_.set_option(tcp::socket::reuse_address(true), failure);
      socket_.set_option(tcp::no_delay(true), failure);
      socket_.bind({own, 0}, failure);
    }
    socket_.async_connect({asio::ip::make_address(plan_->server.host), plan_->server.port},
                          [self = shared_from_this()](const std::error_code& refused) { self->onConnect(refused); });
  }
  void onConnect(const std::error_code& refused) {
    if (ended_) return close();
    if (refused) {
      ++count_.refused;
      return again(pause() + 200ms);
    }
    ++connection_;
    ++count_.connections;
    isOpen_ = true;
    input_.clear();
    onOpen();
    read();
  }
  void read() {
    if (!isOpen_ || !reads()) return;
    socket_.async_read_some(asio::buffer(portion_), [self = shared_from_this(), connection = connection_](
                                                        const std::error_code& failure, std::size_t got) {
      if (connection != self->connection_ || !self->isOpen_) return;
      if (failure) return self->onEnd();
      self->count_.bytesReceived += got;
      self->input_.insert(self->input_.end(), self->portion_.begin(),
                          self->portion_.begin() + static_cast<std::ptrdiff_t>(got));
      self->takeFrames();
      self->read();
    });
  }
  void takeFrames() {
    std::size_t taken = 0;
    while (isOpen_ && input_.size() - taken >= kShortestFrame) {
      const std::uint8_t* length = input_.data() + taken;
      const std::size_t size = length[0] | std::size_t{length[1]} << 8 | std::size_t{length[2]} << 16;
      if (size < kShortestFrame || input_.size() - taken < size) break;
      onFrame(std::span(input_).subspan(taken, size));
      taken += size;
    }
    input_.erase(input_.begin(), input_.begin() + static_cast<std::ptrdiff_t>(std::min(taken, input_.size())));
  }
  void onEnd() {
    ++count_.cutOff;
    close();
    if (!ended_) again(pause());
  }
  void close() {
    isOpen_ = false;
    std::error_code ignored;
    socket_.close(ignored);
  }

  std::shared_ptr<const AttackPlan> plan_;
  std::mt19937_64 random_;
  std::uint64_t number_;
  AttackCount& count_;
  tcp::socket socket_;
  asio::steady_timer timer_;
  Bytes output_, input_;
  std::array<std::uint8_t, 4096> portion_;
  std::uint64_t connection_ = 0;
  bool isOpen_ = false;
  bool ended_ = false;
};

namespace {

using Attacker = Attackers::Attacker;

/// An attacker that comes in first, as far as it can: shakes hands, and logs on at its own account.
class Insider : public Attacker {
 public:
  using Attacker::Attacker;

 protected:
  virtual bool logsOn() const { return true; }
  /// Where the attack begins.
  virtual void onInside() = 0;

  void onOpen() override { send(handShake()); }
  void onFrame(std::span<const std::uint8_t> received) override {
    if (isFrameOf<SrvHandShaked>(received)) {
      if (!logsOn()) return onInside();
      send(std::exchange(isRegistered_, true) ? logon(ownName(), kPassword) : registration(ownName()));
    } else if (isFrameOf<SrvRegistrationOk>(received) || isFrameOf<SrvRegistrationFail>(received)) {
      send(logon(ownName(), kPassword));
    } else if (isFrameOf<SrvLogonOk>(received)) {
      onInside();
    } else if (isFrameOf<SrvLogonError>(received)) {
      hangUp(false);  // the server may have been killed before it knew the account
      isRegistered_ = false;
    }
  }

 private:
  bool isRegistered_ = false;
};

/// Sends good frames until the server is busy with it, then one that is not good, and waits for the end.
class Malformed final : public Insider {
 public:
  using Insider::Insider;

 private:
  bool logsOn() const override { return logsOn_; }
  Duration pause() override {
    // A hash for every connection would be another attack.
    logsOn_ = below(16) == 0;
    return Insider::pause();
  }
  void onInside() override { sendNext(); }
  void sendNext() {
    const std::span<const std::uint8_t> damaged = damager_.next(anyOf(plan().clientFrames));
    if (damaged.size() < kShortestFrame) return sendNext();
    // The length is right, so that the fields are looked at; now and then that is wrong, too.
    send(rawFrame(static_cast<std::uint32_t>(damaged.size()), Bytes(damaged.begin() + 4, damaged.end())));
  }
  // What was not worth an end is followed by the next one.
  void onSent() override {
    if (isBegun_) later(50ms, [this] { sendNext(); });
    isBegun_ = true;
  }
  void onOpen() override {
    isBegun_ = false;
    Insider::onOpen();
  }

  bool logsOn_ = false;
  bool isBegun_ = false;
  test::Damager damager_{below(~0u)};
};

/// A byte at a time: a hand-shake, or a logon behind one, that never comes to its end.
class SlowSender final : public Attacker {
 public:
  using Attacker::Attacker;

 private:
  void onOpen() override {
    bytes_ = handShake();
    const bool isQuick = below(2) == 0;  // with the hand-shake
    next_ = 0;
    if (isQuick) {
      const Bytes rest = logon(std::string(1500, 'x'), std::string(1500, 'y'));
      next_ = bytes_.size();
      bytes_.insert(bytes_.end(), rest.begin(), rest.end());
      send(Bytes(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(next_)));
    } else {
      onSent();
    }
  }
  void onSent() override {
    later(700ms, [this] {
      if (next_ < bytes_.size()) send({bytes_[next_++]});
    });
  }

  Bytes bytes_;
  std::size_t next_ = 0;
};

/// Asks for all that is long, and never takes an answer.
class SlowReader final : public Insider {
 public:
  using Insider::Insider;

 private:
  bool reads() const override { return !isInside_; }
  void onOpen() override {
    isInside_ = false;
    Insider::onOpen();
  }
  void onInside() override {
    isInside_ = true;
    onSent();
  }
  void onSent() override {
    if (!isInside_) return;
    Bytes questions = frame<ClConnectGame>(plan().gameID, "", "", nullptr, 0);
    for (const Bytes& each :
         {frame<ClGetServerInfo>(kRingGames, kNoList, 0u), frame<ClGetHandHistory>(true, plan().gameID, false)}) {
      questions.insert(questions.end(), each.begin(), each.end());
    }
    later(20ms, [this, questions] { send(questions); });
  }

  bool isInside_ = false;
};

/// Connects, and says nothing.
class Silent final : public Attacker {
 public:
  using Attacker::Attacker;

 private:
  void onOpen() override {}
};

/// Logs on and is never heard of again; for the server it is as if the cable had been cut, but that nobody answers probes.
class Vanished final : public Insider {
 public:
  using Insider::Insider;

 private:
  bool reads() const override { return !isGone_; }
  void onOpen() override {
    isGone_ = false;
    Insider::onOpen();
    // It does not read, so it does not notice when it has been cut off.
    later(70s, [this] { hangUp(true); });
  }
  void onInside() override { isGone_ = true; }
  Duration pause() override { return 1s; }

  bool isGone_ = false;
};

/// Good frames, as many as the server takes.
class Flood final : public Insider {
 public:
  using Insider::Insider;

 private:
  void onInside() override {
    wave_.clear();
    while (wave_.size() < 16 * 1024) {
      for (const Bytes& each : {frame<ClPing>(), frame<ClKeepAlive>(static_cast<std::uint32_t>(wave_.size()))}) {
        wave_.insert(wave_.end(), each.begin(), each.end());
      }
    }
    send(wave_);
  }
  void onSent() override {
    if (!wave_.empty()) send(wave_);
  }
  void onOpen() override {
    wave_.clear();
    Insider::onOpen();
  }

  Bytes wave_;
};

/// Comes and goes, in order or with a reset.
class ConnectClose final : public Attacker {
 public:
  using Attacker::Attacker;

 private:
  void onOpen() override {
    later(Duration(below(5)), [this] { hangUp(below(2) == 0); });
  }
  Duration pause() override { return Duration(20 + below(60)); }
};

/// Tries passwords of those who play, as often as it is let.
class Guessing final : public Insider {
 public:
  using Insider::Insider;

 private:
  bool logsOn() const override { return false; }
  void onInside() override { guess(); }
  void onFrame(std::span<const std::uint8_t> received) override {
    if (isFrameOf<SrvLogonError>(received)) return guess();
    Insider::onFrame(received);
  }
  void guess() {
    const std::string victim = plan().victims.empty() ? "nobody" : plan().victims[below(plan().victims.size())];
    send(logon(victim, kSecret + std::to_string(below(1'000'000))));
  }
  Duration pause() override { return Duration(10 + below(20)); }
};

/// What only the server may say.
class WrongDirection final : public Insider {
 public:
  using Insider::Insider;

 private:
  bool logsOn() const override { return false; }
  void onInside() override { send(anyOf(plan().serverFrames)); }
};

/// What a client may say, but not before it is logged on.
class WrongState final : public Insider {
 public:
  using Insider::Insider;

 private:
  bool logsOn() const override { return false; }
  void onOpen() override {
    if (below(2) == 0) return Insider::onOpen();
    send(anyOf(plan().clientFrames));
  }
  void onInside() override { onSent(); }
  void onSent() override {
    // Some that are allowed are among them.
    later(20ms, [this] { send(anyOf(plan().clientFrames)); });
  }
};

/// Announces more than may be, or less than there can be, and sends what it has announced.
class Oversized final : public Insider {
 public:
  using Insider::Insider;

 private:
  bool logsOn() const override { return false; }
  void onInside() override {
    static constexpr std::array kLengths = {0u, 1u, 5u, 4097u, 65'536u, 0x7FFF'FFFFu, 0x8000'0000u, 0xFFFF'FFFFu};
    isBegun_ = true;
    send(rawFrame(kLengths[below(kLengths.size())], Bytes(4000, 0xCB)));
  }
  void onSent() override {
    if (isBegun_) send(Bytes(16 * 1024, 0xCB));
  }
  void onOpen() override {
    isBegun_ = false;
    Insider::onOpen();
  }

  bool isBegun_ = false;
};

struct Kind {
  AttackKind kind;
  std::shared_ptr<Attacker> (*make)(asio::io_context&, std::shared_ptr<const AttackPlan>, AttackCount&, std::uint64_t);
};

template <class T>
std::shared_ptr<Attacker> makeAttacker(asio::io_context& context, std::shared_ptr<const AttackPlan> plan,
                                       AttackCount& count, std::uint64_t number) {
  return std::make_shared<T>(context, std::move(plan), count, number);
}

constexpr std::array kKinds = {
    Kind{{"malformed", "frames of every class, damaged"}, makeAttacker<Malformed>},
    Kind{{"slow-sender", "a byte at a time"}, makeAttacker<SlowSender>},
    Kind{{"slow-reader", "asks for what is long and reads nothing", false}, makeAttacker<SlowReader>},
    Kind{{"silent", "connects and says nothing"}, makeAttacker<Silent>},
    Kind{{"vanished", "logs on and is never heard of again", false}, makeAttacker<Vanished>},
    Kind{{"flood", "good frames, as many as are taken", false}, makeAttacker<Flood>},
    Kind{{"connect-close", "comes and goes", false}, makeAttacker<ConnectClose>},
    Kind{{"guessing", "wrong passwords of those who play"}, makeAttacker<Guessing>},
    Kind{{"wrong-direction", "what only the server may say"}, makeAttacker<WrongDirection>},
    Kind{{"wrong-state", "what may not be said yet"}, makeAttacker<WrongState>},
    Kind{{"oversized", "lengths that cannot be"}, makeAttacker<Oversized>},
};

}  // namespace

std::span<const AttackKind> attackKinds() {
  static const std::vector<AttackKind> kinds = [] {
    std::vector<AttackKind> all;
    for (const Kind& each : kKinds) all.push_back(each.kind);
    return all;
  }();
  return kinds;
}

Attackers::Attackers(asio::io_context& context, AttackPlan plan, const std::vector<std::string>& kinds)
    : context_(context), plan_(std::make_shared<const AttackPlan>(std::move(plan))) {
  for (const Kind& each : kKinds) {
    if (kinds.empty() || std::find(kinds.begin(), kinds.end(), each.kind.name) != kinds.end())
      kinds_.push_back(&each.kind);
  }
  for (const std::string& name : kinds) {
    const auto isIt = [&](const Kind& each) { return each.kind.name == name; };
    if (std::none_of(kKinds.begin(), kKinds.end(), isIt)) throw std::invalid_argument("there is no attack " + name);
  }
  for (const AttackKind* kind : kinds_) counts_[kind->name];
}

Attackers::~Attackers() { end(); }

void Attackers::begin(std::size_t attackers) {
  for (std::size_t i = 0; i < attackers; ++i) {
    const AttackKind& wanted = *kinds_[i % kinds_.size()];
    const auto isIt = [&](const Kind& each) { return each.kind.name == wanted.name; };
    const Kind& kind = *std::find_if(kKinds.begin(), kKinds.end(), isIt);
    attackers_.push_back(kind.make(context_, plan_, counts_[wanted.name], i));
    attackers_.back()->start();
  }
}

void Attackers::end() {
  for (const auto& attacker : attackers_) attacker->stop();
  attackers_.clear();
}

std::size_t Attackers::open() const {
  return static_cast<std::size_t>(
      std::count_if(attackers_.begin(), attackers_.end(), [](const auto& each) { return each->isOpen(); }));
}

}  // namespace poker::holdem
