// What a hand of nine players costs the table server: all of it over TCP, and each part of it alone. Every figure is
// processor time a hand, so that the ratio to `tcp` is the part's share.
//
//   tcp         a whole server in a thread of its own, whose processor time alone counts, and nine clients
//   no_sockets  house, table, rules, bank and encoding; players' moves are calls, frames end before the sockets
//   rules       the rules alone, the shuffle included
//   record      writing what the bank keeps of the hand
//   bank        booking it, in memory; bank_file: in a file
//   encode      every command of the server once, however many it goes to
//   decode      framing and decoding of what the clients send
//   dispatch    from the decoded command to its handler

#include "TableBenchHands.h"

#include <CommandProcessor/core/ClientCmdProcessor.h>
#include <CommandProcessor/core/CmdDispatcher.h>
#include <examples/holdem/server/Server.h>
#include <examples/holdem/server/table/HandRecord.h>
#include <examples/holdem/shared/Protocol.h>
#include <hostkit/Decode.h>
#include <hostkit/Encode.h>
#include <hostkit/StreamFramer.h>

#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <asio/ip/tcp.hpp>
#include <asio/post.hpp>
#include <asio/write.hpp>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <thread>

namespace poker::bench {
namespace {

// The hands

std::uint64_t mixed(std::uint64_t number) {
  number = (number ^ (number >> 30)) * 0xBF58476D1CE4E5B9;
  number = (number ^ (number >> 27)) * 0x94D049BB133111EB;
  return number ^ (number >> 31);
}

/// Loose players, so that a hand has as many decisions as people's hands have, and half of the hands come to a show-down.
UserAction choose(std::uint32_t options, std::uint64_t hand, std::uint64_t decision) {
  const std::uint64_t chance = mixed(hand << 32 | decision) % 100;
  const auto firstOf = [&](auto... actions) {
    UserAction chosen = UserAction::NoAction;
    ((chosen = chosen == UserAction::NoAction && (options & actionBit(actions)) != 0 ? actions : chosen), ...);
    return chosen;
  };
  if ((options & actionBit(UserAction::Check)) != 0) {
    return chance < 85 ? firstOf(UserAction::Bet, UserAction::Raise, UserAction::AllIn, UserAction::Check)
                       : UserAction::Check;
  }
  if (chance < 22) return UserAction::Fold;
  if (chance < 23) return firstOf(UserAction::AllIn, UserAction::Call);
  return chance < 68 ? firstOf(UserAction::Raise, UserAction::AllIn, UserAction::Call) : UserAction::Call;
}

class Recorder final : public Room {
 public:
  explicit Recorder(PlayedHands& played) : played_(played) {}

  void playAll() {
    while (table().handsPlayed() < kHands) {
      if (asked_.empty()) {
        runTimer();
        continue;
      }
      const Move move = asked_.front();
      asked_.pop_front();
      played_.moves.push_back(move);
      if (inSample()) played_.sampleMoves = played_.moves.size();
      play(move);
    }
    played_.rake = bank().audit().rake;
    for (std::uint64_t hand = 1; hand <= kHands; ++hand) played_.records.push_back(*bank().handRecord(hand));
  }

 private:
  bool inSample() { return table().handsPlayed() < PlayedHands::kSampleHands; }

  void sendFrame(const ConnectionID& to, std::span<const std::uint8_t> frame) override {
    ++played_.framesOut;
    // A command goes to its viewers in their order. Positions are told to each player alone, and may be the same.
    const bool again = last_ < to && std::ranges::equal(frame, lastFrame_) && !isFrameOf<SrvHoldemPlayerPos>(frame);
    last_ = to;
    if (!again) {
      lastFrame_.assign(frame.begin(), frame.end());
      if (inSample()) played_.commands.push_back(lastFrame_);
    }
    if (isFrameOf<SrvGameStart>(frame) && !again) decision_ = 0;
    if (asksForMove(frame)) ask(seatOf(to), frame);
  }
  void ask(std::uint8_t seat, std::span<const std::uint8_t> frame) {
    const DecodeResult decoded = decodeCommand(frame.subspan(kLengthSlot), DecodePolicy::of(Side::Client));
    const auto* turn = dynamic_cast<const SrvUserTurn*>(decoded.command.get());
    asked_.push_back({seat, turn == nullptr ? UserAction::NoAction
                                            : choose(turn->getActionCodes(), table().handsPlayed(), decision_++)});
  }

  PlayedHands& played_;
  std::deque<Move> asked_;
  std::uint64_t decision_ = 0;
  ConnectionID last_;
  Bytes lastFrame_;
};

}  // namespace

const PlayedHands& playedHands() {
  static const PlayedHands played = [] {
    Log::setSink([](const LogRecord&) {});
    PlayedHands hands;
    Recorder(hands).playAll();
    return hands;
  }();
  return played;
}

namespace {

/// As a client sends a move: a turn is acknowledged and answered in one write.
Bytes framesOf(const Move& move) {
  Bytes bytes;
  SerializeCommandBuf buffer(64);
  const auto append = [&](const PokerCommandI& command) {
    const std::span<const std::uint8_t> frame = encodeCommand(command, buffer);
    bytes.insert(bytes.end(), frame.begin(), frame.end());
  };
  if (move.bringsMore()) {
    append(*make<ClMoreMoney>(kBuyIn));
  } else {
    append(*make<ClTurnReceived>());
    append(*make<ClUserAction>(move.action));
  }
  return bytes;
}

// Time

double secondsOf(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// Processor time of the thread that asks.
double processorTime() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// Its part that was spent in the system.
double systemTime() {
  rusage usage{};
  getrusage(RUSAGE_THREAD, &usage);
  return secondsOf(usage.ru_stime);
}

void countHands(benchmark::State& state, std::uint64_t perIteration) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(perIteration));
}

// The parts

void rules(benchmark::State& state) {
  const PlayedHands& played = playedHands();
  NoEvents nothing;
  Hand hand(nothing);
  std::uint64_t showDowns = 0;
  for (auto _ : state) {
    RulesOnly game(played.moves);
    for (std::uint64_t i = 0; i < kHands; ++i) {
      game.play(hand);
      showDowns += hand.finalists().size() > 1 ? 1 : 0;
    }
    if (game.rake != played.rake) state.SkipWithError("other hands than the recorded ones");
  }
  countHands(state, kHands);
  state.counters["show_downs"] =
      benchmark::Counter(static_cast<double>(showDowns) / kHands, benchmark::Counter::kAvgIterations);
  state.counters["decisions"] = static_cast<double>(played.moves.size()) / kHands;
}

void noSockets(benchmark::State& state) {
  const PlayedHands& played = playedHands();
  for (auto _ : state) {
    Room room;
    const std::uint64_t framesBefore = room.framesOut;
    const double begin = processorTime();
    for (const Move& move : played.moves) {
      while (!move.bringsMore() && room.table().isIdle()) room.runTimer();
      room.play(move);
    }
    state.SetIterationTime(processorTime() - begin);
    if (room.table().handsPlayed() != kHands || room.bank().audit().rake != played.rake ||
        room.framesOut - framesBefore != played.framesOut) {
      state.SkipWithError("other hands than the recorded ones");
    }
  }
  countHands(state, kHands);
}

/// A hand that is over, with all that its record is made from.
struct FinishedGame final : NoEvents {
  Hand hand{*this};
  HandRecord record;

  void onBlind(const HandPlayer& player, UserAction action, const RealMoneyType& amount) override {
    record.add(Street::PreFlop, player.seat, action, amount);
  }
  void onAction(const HandPlayer& player, UserAction action, const RealMoneyType& amount) override {
    record.add(hand.street(), player.seat, action, amount);
  }
  void onUncalled(const HandPlayer& player, const RealMoneyType& amount) override {
    record.add(hand.street(), player.seat, UserAction::NoAction, amount);
  }
};

void record(benchmark::State& state) {
  RulesOnly game(playedHands().moves);
  const TableSettings settings = tableSettings();
  Seats seats;
  for (std::uint8_t seat = 0; seat < kPlayers; ++seat) seats.take(seat).name = accountOf(seat).userName;
  std::vector<std::unique_ptr<FinishedGame>> games;
  for (std::uint64_t number = 1; number <= kHands; ++number) {
    games.push_back(std::make_unique<FinishedGame>());
    games.back()->record.begin(number);
    game.play(games.back()->hand);
  }
  std::size_t bytes = 0;
  for (auto _ : state) {
    bytes = 0;
    for (const auto& played : games) bytes += played->record.toJson(settings, played->hand, seats).size();
  }
  countHands(state, kHands);
  state.counters["bytes"] = static_cast<double>(bytes) / kHands;
}

/// What the bank is told of each hand, and who brings more after it.
struct Booking {
  FinishedHand hand;
  std::vector<AccountID> rebuys;
};

std::vector<Booking> bookings(std::span<const AccountID> accounts) {
  const PlayedHands& played = playedHands();
  RulesOnly game(played.moves);
  NoEvents nothing;
  Hand hand(nothing);
  std::vector<Booking> all;
  for (std::uint64_t i = 0; i < kHands; ++i) {
    std::array<RealMoneyType, kPlayers> before;
    for (std::uint8_t seat = 0; seat < kPlayers; ++seat) before[seat] = game.stackOf(seat);
    game.play(hand);
    Booking& booking = all.emplace_back();
    booking.hand = {tableSettings().gameID, i + 1, played.records[i], {}, hand.pots().rake()};
    for (const HandPlayer& player : hand.players()) {
      const std::uint8_t seat = player.seat.value();
      booking.hand.players.push_back({accounts[seat], before[seat], player.stack, player.won > kZeroMoney});
      if (game.stackOf(seat) != player.stack) booking.rebuys.push_back(accounts[seat]);
    }
  }
  return all;
}

void book(benchmark::State& state, const std::string& file) {
  for (auto _ : state) {
    std::optional<Bank> bank(std::in_place, BankSettings{file, 1});
    std::vector<AccountID> accounts;
    for (std::uint8_t seat = 0; seat < kPlayers; ++seat) {
      const auto account = accountOf(seat);
      accounts.push_back(*bank->openAccount(account.userName, account.password, {}, houseSettings().gift));
      bank->sitDown(accounts.back(), tableSettings().gameID, seat, kBuyIn);
    }
    const std::vector<Booking> hands = bookings(accounts);
    const double begin = processorTime();
    for (const Booking& booking : hands) {
      bank->finishHand(booking.hand);
      for (const AccountID account : booking.rebuys) bank->addChips(account, kBuyIn);
    }
    state.SetIterationTime(processorTime() - begin);
    bank.reset();
    if (file != ":memory:") std::filesystem::remove(file);
  }
  countHands(state, kHands);
}

void bank(benchmark::State& state) { book(state, ":memory:"); }

void bankFile(benchmark::State& state) {
  // Beside the program: where temporary files live may be memory, too.
  const std::filesystem::path file =
      std::filesystem::read_symlink("/proc/self/exe").parent_path() / "bench_commands.bank";
  for (const char* left : {"", "-wal", "-shm"}) std::filesystem::remove(file.string() + left);
  book(state, file.string());
}

void encode(benchmark::State& state) {
  std::vector<CommandHandle<>> commands;
  for (const Bytes& frame : playedHands().commands) {
    commands.push_back(decodeCommand(std::span(frame).subspan(kLengthSlot), DecodePolicy::of(Side::Client)).command);
  }
  SerializeCommandBuf buffer(1024);
  for (auto _ : state) {
    for (const CommandHandle<>& command : commands) {
      benchmark::DoNotOptimize(encodeCommand(*command, buffer).data());
      benchmark::ClobberMemory();
    }
  }
  countHands(state, PlayedHands::kSampleHands);
  state.counters["commands"] = static_cast<double>(commands.size()) / PlayedHands::kSampleHands;
}

std::span<const Move> sampleMoves() { return std::span(playedHands().moves).first(playedHands().sampleMoves); }

void decode(benchmark::State& state) {
  std::vector<Bytes> reads;
  for (const Move& move : sampleMoves()) reads.push_back(framesOf(move));
  StreamFramer framer;
  framer.setLoggedOn(true);
  framer.setWiping(true);
  for (auto _ : state) {
    for (const Bytes& bytes : reads) {
      framer.feed(bytes);
      for (Frame frame; framer.next(frame) == StreamFramer::Result::Frame;) {
        const DecodeResult decoded = decodeCommand(frame.command(), DecodePolicy::of(Side::Server));
        benchmark::DoNotOptimize(decoded.command.get());
      }
    }
  }
  countHands(state, PlayedHands::kSampleHands);
  state.counters["commands"] =
      static_cast<double>(framer.frames()) / PlayedHands::kSampleHands / static_cast<double>(state.iterations());
}

class CountingHandlers final : public ClientCmdProcessor {
 public:
  std::uint64_t count = 0;

  bool processCommand(PokerCommandTmpl<ClientCmdProcessorType>& command) override {
    command.process(results_, *this);
    return true;
  }
  void onClTurnReceived(Results&, ClTurnReceived&) override { ++count; }
  void onClUserAction(Results&, ClUserAction&) override { ++count; }
  void onClMoreMoney(Results&, ClMoreMoney&) override { ++count; }

 private:
  Results results_;
};

void dispatch(benchmark::State& state) {
  std::vector<CommandHandle<>> commands;
  for (const Move& move : sampleMoves()) {
    StreamFramer framer;
    framer.feed(framesOf(move));
    for (Frame frame; framer.next(frame) == StreamFramer::Result::Frame;) {
      commands.push_back(decodeCommand(frame.command(), DecodePolicy::of(Side::Server)).command);
    }
  }
  CountingHandlers handlers;
  CmdDispatcher dispatcher;
  dispatcher.registerClientCmdProcessor(handlers);
  for (auto _ : state) {
    for (const CommandHandle<>& command : commands) dispatcher.dispatchCommand(*command);
  }
  if (handlers.count != commands.size() * static_cast<std::uint64_t>(state.iterations())) {
    state.SkipWithError("a command did not reach its handler");
  }
  countHands(state, PlayedHands::kSampleHands);
}

// The whole

/// A player's end of the connection, which costs as little as it can: whenever the server asks for something, it sends the
/// next message of its script, and reads nothing else.
class ScriptedClient {
 public:
  ScriptedClient(asio::io_context& context, std::uint16_t port, std::vector<Bytes> script)
      : socket_(context), framer_(SessionLimits::forClient().frames), script_(std::move(script)) {
    socket_.connect({asio::ip::address_v4::loopback(), port});
    socket_.set_option(asio::ip::tcp::no_delay(true));
    sendNext();
    read();
  }

  std::function<void()> onHandOver = [] {};
  std::uint64_t framesIn() const { return framer_.frames(); }

 private:
  void read() {
    const std::span<std::uint8_t> space = framer_.prepare();
    socket_.async_read_some(asio::buffer(space.data(), space.size()),
                            [this](const std::error_code& ended, std::size_t received) {
                              if (ended) return socket_.close();
                              framer_.commit(received);
                              for (Frame frame; framer_.next(frame) == StreamFramer::Result::Frame;) take(frame.bytes);
                              read();
                            });
  }
  void take(std::span<const std::uint8_t> frame) {
    if (asksForMove(frame) || isFrameOf<SrvHandShaked>(frame) || isFrameOf<SrvRegistrationOk>(frame) ||
        isFrameOf<SrvLogonOk>(frame) || isFrameOf<SrvTableState>(frame)) {
      sendNext();
    } else if (isFrameOf<SrvTUShowDown>(frame)) {
      onHandOver();
    }
  }
  void sendNext() {
    // A player who has lost everything in the last hand is asked, too.
    if (next_ < script_.size()) asio::write(socket_, asio::buffer(script_[next_++]));
  }

  asio::ip::tcp::socket socket_;
  StreamFramer framer_;
  std::vector<Bytes> script_;
  std::size_t next_ = 0;
};

/// From the hand-shake to the last move.
std::vector<Bytes> scriptOf(std::uint8_t seat) {
  std::vector<Bytes> script;
  SerializeCommandBuf buffer(1024);
  const auto add = [&](const PokerCommandI& command) {
    const std::span<const std::uint8_t> frame = encodeCommand(command, buffer);
    script.emplace_back(frame.begin(), frame.end());
  };
  const CommonTypes::NewAccountInfo account = accountOf(seat);
  RawDataHolder nothing;
  add(*make<ClHandShake>(kProtocolVersion));
  add(*make<ClMakeNewAccount>(account, nothing, Int2StringSer()));
  add(*make<ClLogon>(account.userName.c_str(), account.password.c_str(), CommonTypes::HardwareInfo(), nullptr, 0, false,
                     false));
  add(*make<ClConnectGame>(tableSettings().gameID, "", "", nullptr, 0));
  add(*make<ClSitDown>(SeatID(seat), kBuyIn, TourMoneyChooser::empty()));
  for (const Move& move : playedHands().moves) {
    if (move.seat == seat) script.push_back(framesOf(move));
  }
  return script;
}

/// How far the server is.
struct Moment {
  std::uint64_t hands = 0;
  double processor = 0;
  double system = 0;
  std::chrono::steady_clock::time_point time;
  std::uint64_t framesOut = 0;
};

void tcp(benchmark::State& state) {
  constexpr std::uint64_t kWarmUp = 50;
  const PlayedHands& played = playedHands();
  double framesIn = 0;  // of a hand
  for (const Move& move : played.moves) framesIn += (move.bringsMore() ? 1.0 : 2.0) / kHands;
  double hands = 0, commands = 0, system = 0, processor = 0, wall = 0;
  for (auto _ : state) {
    ServerSettings settings;
    settings.limits.rate.framesPerSecond = 0;
    settings.house = houseSettings();
    asio::io_context serverContext{1};
    Server server(serverContext, settings, nullptr);
    bool drained = false;
    server.start([&] { drained = true; });

    asio::io_context clientContext{1};
    std::vector<std::unique_ptr<ScriptedClient>> clients;
    for (std::uint8_t seat = 0; seat < kPlayers; ++seat) {
      clients.push_back(std::make_unique<ScriptedClient>(clientContext, server.port(), scriptOf(seat)));
    }
    Moment begin, end;
    const auto note = [&](Moment& moment) {
      for (const auto& client : clients) moment.framesOut += client->framesIn();
      asio::post(serverContext, [&] {
        moment.hands = server.house().tables().front()->handsPlayed();
        moment.processor = processorTime();
        moment.system = systemTime();
        moment.time = std::chrono::steady_clock::now();
      });
    };
    std::uint64_t seen = 0;
    clients.front()->onHandOver = [&] {
      if (++seen == kWarmUp) note(begin);
      if (seen == kHands) note(end);
    };
    std::thread serverThread([&] {
      serverContext.run();
      clientContext.stop();  // for a server that ended before its hands were played
    });
    clientContext.run();
    serverThread.join();

    if (!drained || end.hands != kHands || server.house().bank().audit().rake != played.rake) {
      state.SkipWithError("other hands than the recorded ones");
      break;
    }
    const auto count = static_cast<double>(end.hands - begin.hands);
    // Time for as many hands as the other contestants play.
    state.SetIterationTime((end.processor - begin.processor) / count * kHands);
    hands += count;
    commands += static_cast<double>(end.framesOut - begin.framesOut) + framesIn * count;
    processor += end.processor - begin.processor;
    system += end.system - begin.system;
    wall += std::chrono::duration<double>(end.time - begin.time).count();
  }
  countHands(state, kHands);
  state.counters["commands_per_hand"] = commands / hands;
  state.counters["commands_per_second"] = commands / processor;
  state.counters["hands_per_wall_second"] = hands / wall;
  state.counters["in_the_system"] = system / processor;
}

BENCHMARK(tcp)->Name("table/tcp")->UseManualTime();
BENCHMARK(noSockets)->Name("table/no_sockets")->UseManualTime();
BENCHMARK(rules)->Name("table/rules");
BENCHMARK(record)->Name("table/record");
BENCHMARK(bank)->Name("table/bank")->UseManualTime();
BENCHMARK(bankFile)->Name("table/bank_file")->UseManualTime();
BENCHMARK(encode)->Name("table/encode");
BENCHMARK(decode)->Name("table/decode");
BENCHMARK(dispatch)->Name("table/dispatch");

}  // namespace
}  // namespace poker::bench
