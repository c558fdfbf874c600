#include <examples/holdem/siege/Siege.h>

#include <examples/holdem/server/bank/Bank.h>
#include <examples/holdem/siege/Honest.h>
#include <examples/holdem/siege/ServerProcess.h>
#include <inspect/CommandText.h>

#include <fmt/format.h>
#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <future>
#include <memory>
#include <random>
#include <set>
#include <stdexcept>
#include <thread>
#include <utility>

#ifdef __linux__
#include <sched.h>
#endif

namespace poker::holdem {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

namespace {

constexpr std::size_t kSeats = 6;

/// The calling thread; on Linux alone, elsewhere nothing changes.
void runWhenNobodyElseDoes() {
#ifdef __linux__
  const sched_param noPriority{};
  ::sched_setscheduler(0, SCHED_IDLE, &noPriority);
#endif
}

/// An event loop on a thread of its own, for what is not to disturb the players' stop-watches: attackers have machines of
/// their own in the world, and here what the server and the players leave of one.
class Background {
 public:
  Background()
      : thread_([this] {
          runWhenNobodyElseDoes();
          context_.run();
        }) {}
  ~Background() {
    context_.stop();
    thread_.join();
  }
  asio::io_context& context() { return context_; }
  /// Does the work there and waits for it.
  template <class Work>
  auto call(Work&& work) {
    std::packaged_task<decltype(work())()> task(std::forward<Work>(work));
    auto result = task.get_future();
    asio::post(context_, [&task] { task(); });
    return result.get();
  }

 private:
  asio::io_context context_{1};
  asio::executor_work_guard<asio::io_context::executor_type> guard_ = asio::make_work_guard(context_);
  std::thread thread_;
};

class Siege {
 public:
  Siege(const SiegeSettings& settings, const std::function<void(const std::string&)>& tell,
        const std::atomic<bool>& stops)
      : settings_(settings), tell_(tell), stops_(stops) {
    const std::size_t players = settings_.tables * kSeats;
    report_.seed = settings_.seed;
    report_.connections = settings_.connections;
    report_.tables = settings_.tables;
    report_.attackers = static_cast<std::size_t>(static_cast<double>(settings_.connections) * settings_.attackers);
    if (settings_.connections < players + report_.attackers) {
      throw std::invalid_argument(fmt::format("{} connections have no room for {} players and {} attackers",
                                              settings_.connections, players, report_.attackers));
    }
    guests_ = settings_.connections - players - report_.attackers;
  }
  ~Siege() {
    // What lives on the background's loop ends there.
    background_.call([this] {
      attackers_.reset();
      faulted_.reset();
      proxy_.reset();
      crowd_.reset();
    });
  }

  Report run() {
    if (settings_.besiegesClient) attackClient();
    startServer();
    buildUp();
    for (unsigned round = 1; round <= settings_.rounds && !stops_; ++round) {
      const auto half =
          std::chrono::duration_cast<std::chrono::milliseconds>(settings_.seconds) / (2 * settings_.rounds);
      tell_(fmt::format("round {} of {}: quiet", round, settings_.rounds));
      watch(half, false);
      tell_(fmt::format("round {} of {}: {} attackers", round, settings_.rounds, report_.attackers));
      attack(half);
      if (server_ && kills_ < settings_.kills && round < settings_.rounds && !stops_) killAndReturn();
    }
    finish();
    return std::move(report_);
  }

 private:
  void breakBound(std::string what) { report_.broken.push_back(std::move(what)); }

  void attackClient() {
    tell_("a malicious server against the client");
    report_.client = besiegeClient(settings_.seed, settings_.checksMemory);
    for (const ClientCase& each : report_.client) {
      if (!each.fault.empty()) breakBound(fmt::format("{}: {}", each.name, each.fault));
    }
  }

  void startServer() {
    if (settings_.server) {
      endpoint_ = *settings_.server;
    } else {
      const std::string tables = std::to_string(settings_.tables + 1);
      std::vector<std::string> options = {"--tables",          tables,
                                          "--seats",           std::to_string(kSeats),
                                          "--max-connections", std::to_string(settings_.connections * 2 + 100),
                                          "--hand-pause",      "0.1",
                                          "--welcome",         "1000000",
                                          "--reply-time",      "10",
                                          "--rebuy-time",      "2"};
      if (settings_.patience != 0ms) {
        const std::string seconds = fmt::format("{:.3f}", std::chrono::duration<double>(settings_.patience).count());
        options.insert(options.end(), {"--hand-shake", seconds, "--whole-frame", seconds});
      }
      server_ = std::make_unique<ServerProcess>(settings_.program, options, settings_.folder);
      server_->start();
      endpoint_ = server_->endpoint();
    }
    PlaySettings honest;
    honest.server = endpoint_;
    honest.tables = settings_.tables;
    honest.seats = kSeats;
    honest.pause = settings_.pause;
    honest.seed = settings_.seed;
    play_ = std::make_unique<Play>(context_, honest);

    std::mt19937_64 random(settings_.seed);
    AttackPlan plan;
    plan.server = endpoint_;
    plan.seed = settings_.seed;
    plan.victims = play_->names();
    plan.clientFrames = catalogueFrames(CommandDirection::ClientToServer, random);
    plan.serverFrames = catalogueFrames(CommandDirection::ServerToClient, random);
    background_.call([&] {
      crowd_ = std::make_unique<Crowd>(background_.context(), endpoint_, guests_);
      if (report_.attackers != 0)
        attackers_ = std::make_unique<Attackers>(background_.context(), plan, settings_.attacks);
      if (!settings_.playsThroughFaults) return;
      // What loses nothing happens all the time; what does, often enough to be seen.
      const Faults faults{0.1, 0.2, 0.1, 0.0005, 0.001, 0.001, 15ms};
      proxy_ = std::make_unique<FaultProxy>(background_.context(), endpoint_, faults, faults, settings_.seed);
      PlaySettings faulted = honest;
      faulted.server = {"127.0.0.1", proxy_->port()};
      faulted.firstGame = honest.firstGame + static_cast<std::uint32_t>(settings_.tables);
      faulted.tables = 1;
      faulted.names = "Unlucky";
      faulted.comesAgain = true;
      faulted_ = std::make_unique<Play>(background_.context(), faulted);
    });
  }

  std::size_t guestsInside() {
    return background_.call([this] { return crowd_->inside(); });
  }
  std::size_t inside() { return guestsInside() + play_->seated(); }
  std::size_t honest() const { return guests_ + play_->size(); }

  void buildUp() {
    play_->begin();
    background_.call([this] {
      crowd_->begin();
      if (faulted_) faulted_->begin();
    });
    if (!awaitAll("coming in", 20s + std::chrono::milliseconds(honest() * 300))) {
      throw std::runtime_error(
          fmt::format("only {} of {} honest clients have come in: {}", inside(), honest(), whyGone()));
    }
    lostBefore_ = lost();
  }
  std::string whyGone() {
    const std::string guest = background_.call([this] { return crowd_->whyGone(); });
    return !play_->whyGone().empty() ? play_->whyGone() : guest;
  }
  std::uint64_t lost() {
    return play_->lost() + play_->gone() + background_.call([this] { return crowd_->lost() + crowd_->gone(); });
  }

  /// Runs the players' loop until all honest ones are inside.
  bool awaitAll(const std::string& what, std::chrono::milliseconds within) {
    const auto deadline = Clock::now() + within;
    while (inside() < honest()) {
      if (Clock::now() > deadline || stops_ || hasServerEnded()) return false;
      tell_(fmt::format("{}: {} of {}", what, inside(), honest()));
      context_.run_for(500ms);
    }
    return true;
  }
  bool hasServerEnded() {
    if (!server_ || !server_->hasEnded()) return false;
    if (!std::exchange(hasToldEnd_, true)) breakBound("the server has ended by itself: " + server_->howEnded());
    return true;
  }

  /// Measures for so long.
  void watch(std::chrono::milliseconds time, bool attacked) {
    play_->takeLatencies();
    std::vector<std::uint32_t>& latencies = attacked ? attackedLatencies_ : calmLatencies_;
    std::size_t& held = attacked ? report_.heldAttacked : report_.heldCalm;
    const auto begin = useOfServer();
    const auto start = Clock::now();
    while (Clock::now() < start + time && !stops_ && !hasServerEnded()) {
      context_.run_for(500ms);
      const std::size_t now = inside();
      held = held == 0 ? now : std::min(held, now);
      const std::size_t open = attacked && attackers_ ? background_.call([this] { return attackers_->open(); }) : 0;
      report_.heldAll = std::max(report_.heldAll, now + open);
      if (const auto use = useOfServer()) {
        report_.samples.push_back({std::chrono::duration<double>(Clock::now() - serverStart_).count(),
                                   use->residentBytes, use->descriptors, attacked});
      }
    }
    const std::vector<std::uint32_t> taken = play_->takeLatencies();
    latencies.insert(latencies.end(), taken.begin(), taken.end());
    const double passed = std::chrono::duration<double>(Clock::now() - start).count();
    report_.seconds += passed;
    const auto end = useOfServer();
    if (!begin || !end) return;
    if (attacked) report_.cpuShare = (end->cpuSeconds - begin->cpuSeconds) / passed;
    if (!attacked) report_.descriptorsCalm = std::max(report_.descriptorsCalm, end->descriptors);
  }
  void note(const ProcessUse& use, bool attacked) {
    const double second = std::chrono::duration<double>(Clock::now() - serverStart_).count();
    report_.samples.push_back({second, use.residentBytes, use.descriptors, attacked});
  }
  std::optional<ProcessUse> useOfServer() {
    return server_ && !server_->hasEnded() ? useOf(server_->process()) : std::nullopt;
  }

  void attack(std::chrono::milliseconds time) {
    if (attackers_) background_.call([this] { attackers_->begin(report_.attackers); });
    watch(time, true);
    if (attackers_) background_.call([this] { attackers_->end(); });
  }

  // The server dies

  void killAndReturn() {
    ++kills_;
    tell_("the server is killed");
    countLost();
    report_.kills.push_back(killNow());
    const auto start = Clock::now();
    server_->start();
    report_.samples.clear();
    serverStart_ = Clock::now();
    if (!awaitAll("coming back", 60s + std::chrono::milliseconds(honest() * 300))) {
      if (!stops_)
        breakBound(
            fmt::format("only {} of {} honest clients came back after the kill: {}", inside(), honest(), whyGone()));
    }
    report_.kills.back().backSeconds = std::chrono::duration<double>(Clock::now() - start).count();
    lostBefore_ = lost();
  }
  Killed killNow() {
    const std::size_t accounts = checkedAccounts().size();
    server_->kill();
    // What it had sent before may still be on its way to the players.
    context_.run_for(100ms);
    Killed killed = askBank();
    if (killed.handsMissing != 0)
      breakBound(fmt::format("{} confirmed hands are not in the bank", killed.handsMissing));
    if (killed.accountsMissing != 0) {
      breakBound(fmt::format("{} of {} confirmed accounts are not in the bank", killed.accountsMissing, accounts));
    }
    if (killed.handsConfirmed == 0) breakBound("no hand was over before the server was killed");
    return killed;
  }
  std::vector<std::string> checkedAccounts() {
    std::vector<std::string> names = background_.call([this] { return crowd_->confirmed(); });
    const std::vector<std::string> players = play_->names();
    names.insert(names.end(), players.begin(), players.end());
    return names;
  }
  /// What a server that is not there any more has left.
  Killed askBank() {
    Killed found;
    Bank bank({server_->bankFile()});
    // Not those behind the proxy, which may have heard a wrong number.
    const std::set<std::uint64_t>& confirmed = play_->confirmedHands();
    found.handsConfirmed = confirmed.size();
    for (const std::uint64_t hand : confirmed) found.handsMissing += bank.handRecord(hand) ? 0 : 1;
    for (const std::string& name : checkedAccounts()) found.accountsMissing += bank.find(name) ? 0 : 1;
    report_.hands = bank.lastHandNumber();
    const RealMoneyType difference = bank.audit().difference();
    found.difference = difference.toString();
    if (difference != kZeroMoney) breakBound("chips are lost, or came from nowhere: " + found.difference);
    return found;
  }

  void countLost() {
    const std::uint64_t now = lost();
    report_.honestLost += now - lostBefore_;
    lostBefore_ = now;
  }

  // The end

  void finish() {
    countLost();
    // Those whom the attackers have left behind are gone when the last words are said and the idle ones are found out.
    if (attackers_) {
      report_.attacks.clear();
      background_.call([this] {
        for (const auto& [name, count] : attackers_->counts()) report_.attacks[std::string(name)] = count;
      });
    }
    if (proxy_) report_.faults = background_.call([this] { return proxy_->played(); });
    if (server_ && !hasServerEnded()) {
      tell_("the attackers have gone");
      settle();
      tell_("the server is asked to end");
      server_->askToEnd();
      const auto deadline = Clock::now() + 60s;
      while (!server_->hasEnded() && Clock::now() < deadline) context_.run_for(50ms);
      report_.ended = server_->hasEnded() ? server_->howEnded() : "not within a minute";
      if (!server_->endedInOrder()) breakBound("the server did not end in order: " + report_.ended);
      if (server_->hasEnded()) askBank();
    }
    if (server_) readLogs();
    judge();
  }
  /// Attackers have names of any bytes, and everybody has a password.
  void readLogs() {
    for (const auto& entry : std::filesystem::directory_iterator(server_->folder())) {
      if (entry.path().extension() != ".log") continue;
      std::ifstream log(entry.path(), std::ios::binary);
      for (std::string line; std::getline(log, line);) {
        const auto isPlain = [](char c) { return c >= ' ' && c <= '~'; };
        if (!std::all_of(line.begin(), line.end(), isPlain))
          return breakBound("the log has bytes that a peer chose: " + poker::quoted(line));
        if (line.find(kSecret) != std::string::npos)
          return breakBound("the log has a password: " + poker::quoted(line));
      }
    }
  }
  /// Until the server holds no more descriptors than before the attack, or should do so.
  void settle() {
    const auto deadline = Clock::now() + 10s;
    while (Clock::now() < deadline && !stops_) {
      context_.run_for(250ms);
      const auto use = useOfServer();
      if (!use) return;
      note(*use, false);
      report_.descriptorsLast = use->descriptors;
      report_.residentLast = use->residentBytes;
      if (use->descriptors <= report_.descriptorsCalm) return;
    }
  }

  void judge() {
    report_.calm = Latency::of(std::move(calmLatencies_));
    report_.attacked = Latency::of(std::move(attackedLatencies_));
    if (stops_) return;  // there was no time to see what is to be seen
    if (report_.calm.count == 0 || report_.attacked.count == 0) breakBound("nothing was played");
    const double bound = std::max<double>(report_.calm.p99 * settings_.latencyFactor,
                                          static_cast<double>(settings_.latencyFloor.count()) * 1000);
    if (settings_.latencyFactor != 0 && report_.attackers != 0 && report_.attacked.p99 >= bound) {
      breakBound(fmt::format("p99 is {:.2f} ms under attack and {:.2f} ms in quiet times",
                             report_.attacked.p99 / 1000.0, report_.calm.p99 / 1000.0));
    }
    if (report_.heldAttacked < honest() || report_.heldCalm < honest()) {
      breakBound(fmt::format("of {} honest connections {} were held", honest(),
                             std::min(report_.heldCalm, report_.heldAttacked)));
    }
    if (report_.honestLost != 0)
      breakBound(fmt::format("{} honest connections were lost: {}", report_.honestLost, whyGone()));
    // They come within a second, and the slowest of them have the server's patience.
    const auto patience = settings_.patience != 0ms ? settings_.patience : 10'000ms;
    const bool isLongEnough = settings_.seconds / (2 * settings_.rounds) > patience + 1500ms;
    for (const AttackKind& kind : attackKinds()) {
      const auto found = report_.attacks.find(std::string(kind.name));
      if (found == report_.attacks.end() || report_.attackers < report_.attacks.size()) continue;
      if (found->second.connections == 0) breakBound(fmt::format("{}: no attacker came through", kind.name));
      if (kind.mustBeCutOff && isLongEnough && found->second.cutOff == 0)
        breakBound(fmt::format("{}: nobody was cut off", kind.name));
    }
    judgeMemory();
  }
  void judgeMemory() {
    // From the first attack on: what the crowd and the first one need is what it needs.
    std::vector<Sample>& samples = report_.samples;
    for (const Sample& each : samples) report_.residentMost = std::max(report_.residentMost, each.residentBytes);
    const auto isAttacked = [](const Sample& each) { return each.attacked; };
    const auto first = std::find_if(samples.begin(), samples.end(), isAttacked);
    const auto quiet = std::find_if_not(first, samples.end(), isAttacked);
    if (quiet == samples.end()) return;
    const std::vector<Sample> warm(quiet, samples.end());
    report_.residentFirst = warm.front().residentBytes;
    report_.slope = slopeOf(warm);
    const double grown = report_.slope * (warm.back().second - warm.front().second);
    const double bound = static_cast<double>(std::max(settings_.growth, report_.residentFirst / 10));
    if (settings_.checksMemory && grown > bound) {
      breakBound(fmt::format("the server has grown by {:.1f} MiB in {:.0f} s", grown / (1024 * 1024),
                             warm.back().second - warm.front().second));
    }
    const std::size_t most = report_.descriptorsCalm + report_.attackers / 4 + 16;
    if (report_.descriptorsLast > most) {
      breakBound(fmt::format("the server holds {} descriptors at the end, and held {} in quiet times",
                             report_.descriptorsLast, report_.descriptorsCalm));
    }
  }

  const SiegeSettings settings_;
  const std::function<void(const std::string&)>& tell_;
  const std::atomic<bool>& stops_;
  Report report_;
  std::size_t guests_ = 0;
  Endpoint endpoint_;
  std::unique_ptr<ServerProcess> server_;
  Clock::time_point serverStart_ = Clock::now();
  asio::io_context context_{1};
  std::unique_ptr<Play> play_;
  Background background_;
  std::unique_ptr<Crowd> crowd_;
  std::unique_ptr<FaultProxy> proxy_;
  std::unique_ptr<Play> faulted_;
  std::unique_ptr<Attackers> attackers_;
  std::vector<std::uint32_t> calmLatencies_, attackedLatencies_;
  std::uint64_t lostBefore_ = 0;
  unsigned kills_ = 0;
  bool hasToldEnd_ = false;
};

}  // namespace

Report besiege(const SiegeSettings& settings, const std::function<void(const std::string&)>& tell,
               const std::atomic<bool>& stops) {
  Siege siege(settings, tell, stops);
  return siege.run();
}

}  // namespace poker::holdem
