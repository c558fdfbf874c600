#include <examples/holdem/siege/HostileServer.h>

#include <CommandProcessor/commands/AllCommands.h>
#include <CommandProcessor/wire/SrvCompressedCommands.h>
#include <CommandProcessor/wire/WireNumber.h>
#include <Damage.h>
#include <examples/holdem/client/HouseClient.h>
#include <examples/holdem/siege/Frames.h>
#include <examples/holdem/siege/ServerProcess.h>
#include <hostkit/Batch.h>
#include <hostkit/TcpServer.h>

#include <unistd.h>
#include <asio/io_context.hpp>

#include <array>
#include <chrono>
#include <functional>
#include <span>
#include <string_view>
#include <utility>

namespace poker::holdem {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

namespace {

/// What the client is told when it has logged on, and whether it may go on then.
struct Malice {
  std::string_view name;
  std::function<std::vector<Bytes>(std::mt19937_64&)> frames;
  std::string_view mustSay = "";  ///< what the client's last word has in it; empty: it may go on, too
  unsigned times = 1;
};

Bytes joined(const std::vector<Bytes>& all) {
  Bytes bytes;
  for (const Bytes& each : all) bytes.insert(bytes.end(), each.begin(), each.end());
  return bytes;
}
Bytes batchOf(const Bytes& frames) {
  return frame<SrvCompressedCommands>(frames.data(), static_cast<unsigned>(frames.size()));
}
/// A batch that says another size of what is in it.
Bytes announcing(Bytes batch, std::uint32_t realSize) {
  wire::storeLittleEndian(batch.data() + 6, realSize);
  return batch;
}
/// A frame of the class whose first number, a count, is as large as can be.
template <class T>
Bytes withHugeCount(std::size_t place) {
  Bytes bytes = frameOf(*make<T>());
  bytes.resize(std::max(bytes.size(), place + 4), 0);
  wire::storeLittleEndian(bytes.data() + place, 0xFFFF'FFFFu);
  wire::storeLittleEndian(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  return bytes;
}

std::vector<Malice> malices() {
  const Bytes notice = frame<SrvMaintenance>(std::string(300, 'x').c_str(), MaintainID{1});
  const Bytes inner = joined(std::vector<Bytes>(100, notice));
  const auto always = [](Bytes bytes) {
    return [bytes = std::move(bytes)](std::mt19937_64&) { return std::vector<Bytes>{bytes}; };
  };
  // 64 MiB of zeros are a body of 64 KiB; 900 KiB of notices are what a batch may hold, from a few KiB.
  const Bytes bomb = batchOf(Bytes(64 * 1024 * 1024));
  const Bytes full = batchOf(joined(std::vector<Bytes>(900 * 1024 / notice.size(), notice)));
  return {
      {"batch-bomb", always(bomb), "announces more"},
      {"batch-bomb-that-lies", always(announcing(bomb, 1024 * 1024)), "damaged, or holds more"},
      {"batch-of-4-GiB", always(announcing(batchOf(inner), 0xFFFF'FFFF)), "announces more"},
      {"batch-in-batch", always(batchOf(batchOf(inner))), "holds another batch"},
      {"batch-says-too-little", always(announcing(batchOf(inner), static_cast<std::uint32_t>(inner.size() - 1))),
       "damaged, or holds more"},
      {"batch-says-too-much", always(announcing(batchOf(inner), static_cast<std::uint32_t>(inner.size() + 1))),
       "holds less"},
      {"batch-of-half-frames", always(batchOf(Bytes(inner.begin(), inner.end() - 7))), "no whole frame"},
      {"batch-of-nothing", always(batchOf(Bytes(100'000))), "no whole frame"},
      {"batches-without-end", always(full), "", 200},
      {"huge-list", always(withHugeCount<SrvNews>(6)), "SrvNews"},
      {"length-4-GiB", always(rawFrame(0xFFFF'FFFF, Bytes(64, 1))), "above the limit"},
      {"length-1-MiB-and-1", always(rawFrame(1024 * 1024 + 1, Bytes(64, 1))), "above the limit"},
      {"length-5", always(rawFrame(5, Bytes(64, 1))), "below the minimum"},
      {"frame-that-never-ends", always(rawFrame(1024 * 1024, Bytes(1000, 1))), "lost"},
      {"client's-own-commands",
       [](std::mt19937_64& random) { return catalogueFrames(CommandDirection::ClientToServer, random); }, "(", 1},
      {"every-class",
       [](std::mt19937_64& random) { return catalogueFrames(CommandDirection::ServerToClient, random); }},
      {"flood", always(notice), "", 5000},
      {"silence", [](std::mt19937_64&) { return std::vector<Bytes>(); }, "silent"},
  };
}

class HostileServer final : public SessionEvents {
 public:
  explicit HostileServer(asio::io_context& context) : server_(context, options(), *this) { server_.start(); }

  std::vector<Bytes> frames;  // for whoever logs on
  unsigned times = 1;
  Endpoint endpoint() const { return {"127.0.0.1", server_.port()}; }

 private:
  static ServerOptions options() {
    ServerOptions options;
    options.session.limits.outputHard = 1u << 30;
    options.session.limits.batchFrom = 0;
    return options;
  }
  void onCommand(TcpSession& session, CommandHandle<> command) override {
    if (dynamic_cast<ClHandShake*>(command.get()) != nullptr) {
      session.send(*make<SrvHandShaked>());
      session.setState(SessionState::ShakenHands);
    } else if (dynamic_cast<ClLogon*>(command.get()) != nullptr) {
      session.setState(SessionState::LoggedOn);
      session.send(*make<SrvLogonOk>("Player", "", false, RealMoneyAcc(), true));
      for (unsigned i = 0; i < times; ++i) {
        for (const Bytes& each : frames) session.sendFrame(each, false);
      }
    }
  }

  TcpServer server_;
};

/// A client that comes in and says how it ended.
class Victim final : private HouseEvents {
 public:
  std::string ended;
  bool isOver = false;

  Victim(asio::io_context& context, const Endpoint& server) : client_(context, settings(server), *this) {
    client_.start();
  }

 private:
  static VisitorSettings settings(const Endpoint& server) {
    VisitorSettings settings;
    settings.server = server;
    settings.name = "Victim";
    settings.password = "secret";
    settings.keepAlive = 400ms;  // a silent server is given up after two and a half of them
    return settings;
  }
  void onEnd(PlayerEnd, std::string_view why) override {
    ended = why;
    isOver = true;
  }

  HouseClient client_;
};

ClientCase suffer(const Malice& malice, std::mt19937_64& random, bool checksMemory) {
  ClientCase result;
  result.name = malice.name;
  asio::io_context context(1);
  HostileServer server(context);
  server.frames = malice.frames(random);
  server.times = malice.times;
  takePeakBytes();
  const std::size_t before = useOf(getpid()).value_or(ProcessUse()).residentBytes;
  const auto start = Clock::now();
  {
    Victim victim(context, server.endpoint());
    while (!victim.isOver && Clock::now() - start < 5s) context.run_one_for(20ms);
    result.ended = victim.ended;
    result.seconds = std::chrono::duration<double>(Clock::now() - start).count();
    if (!victim.isOver) {
      result.fault = "the client neither ends nor gives up a server that says nothing more";
    } else if (victim.ended.find(malice.mustSay) == std::string::npos) {
      result.fault = "the client does not say what is wrong";
    }
  }
  const std::size_t peak = takePeakBytes();
  result.peakBytes = peak > before ? peak - before : 0;
  if (checksMemory && result.peakBytes > kMostClientBytes) result.fault = "the client takes too much memory";
  return result;
}

}  // namespace

std::vector<ClientCase> besiegeClient(std::uint64_t seed, bool checksMemory) {
  std::mt19937_64 random(seed);
  std::vector<ClientCase> cases;
  for (const Malice& malice : malices()) cases.push_back(suffer(malice, random, checksMemory));
  // Damage of every class: whichever frame it is that the client cannot read, it says so, or takes it and goes on.
  const std::vector<Bytes> whole = catalogueFrames(CommandDirection::ServerToClient, random);
  test::Damager damager(random());
  for (int round = 0; round < 20; ++round) {
    const Malice damaged{"damaged-frames", [&](std::mt19937_64& dice) {
                           std::vector<Bytes> frames;
                           for (int i = 0; i < 20; ++i) {
                             const std::span<const std::uint8_t> bad = damager.next(whole[dice() % whole.size()]);
                             const std::size_t rest = bad.size() > 6 ? bad.size() : 6;
                             Bytes fields(rest - 4);
                             if (bad.size() > 6) std::copy(bad.begin() + 4, bad.end(), fields.begin());
                             frames.push_back(rawFrame(static_cast<std::uint32_t>(rest), fields));
                           }
                           return frames;
                         }};
    ClientCase result = suffer(damaged, random, checksMemory);
    if (round == 0 || !result.fault.empty()) cases.push_back(std::move(result));
  }
  return cases;
}

}  // namespace poker::holdem
