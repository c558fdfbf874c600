// Batches beside zlib alone on the same bytes: the answer to who opens the lobby, fifty tables, the counters and the news.

#include <CommandProcessor/commands/AllCommands.h>
#include <CommandProcessor/wire/DeserializeCommandBuf.h>
#include <hostkit/Batch.h>
#include <hostkit/CommandHandle.h>
#include <hostkit/Encode.h>

#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace poker::bench {
namespace {

using Bytes = std::vector<std::uint8_t>;

void append(Bytes& frames, const PokerCommandI& command) {
  SerializeCommandBuf buffer(1024);
  const auto frame = encodeCommand(command, buffer);
  frames.insert(frames.end(), frame.begin(), frame.end());
}

constexpr unsigned kTables = 50;

Bytes lobbyOf(unsigned tables) {
  std::mt19937 generator(1);
  const auto below = [&](unsigned end) { return static_cast<std::uint32_t>(generator() % end); };
  ServerUpdateInfo list;
  list.version = 1'795'000'000;
  for (unsigned i = 1; i <= tables; ++i) {
    ServerTableEntry& table = list.tables.emplace_back();
    table.gameID = i;
    table.tableName = "Table " + std::to_string(i);
    table.gameType = GameType::TexasHoldem;
    table.listType = 1;
    table.limitType = i % 3 == 0 ? LimitType::FixedLimit : LimitType::NoLimit;
    table.maxSeats = 9;
    table.replyTime = 20;
    table.lowBet = RealMoneyType::fromUnits(1 << i % 6);
    table.highBet = table.lowBet * 2;
    table.minBuyIn = table.lowBet * 40;
    table.maxBuyIn = table.lowBet * 200;
    table.players = static_cast<std::uint16_t>(below(10));
    table.handNumber = table.players > 1 ? 100'000 + below(1000) : 0;
    table.averagePot = below(10'000);
    table.playersPerFlop = static_cast<std::uint8_t>(below(100));
    table.handsPerHour = 60 + below(40);
    table.observers = below(5);
    table.version = list.version - below(1000);
  }
  Bytes frames;
  append(frames, *make<SrvServerInfo>(list));
  const auto counters = make<SrvServerCountersInfo>();
  for (std::uint8_t key = 1; key <= 5; ++key) counters->counters().set(key, below(10'000));
  append(frames, *counters);
  const auto news = make<SrvNews>();
  news->addMsg(SrvNewsType::Headlines, "The high hand of the evening wins 100.00. Good luck!");
  append(frames, *news);
  return frames;
}

void show(benchmark::State& state, std::size_t plain, std::size_t packed) {
  state.SetItemsProcessed(state.iterations());
  state.counters["bytes"] = static_cast<double>(plain);
  state.counters["packed"] = static_cast<double>(packed);
}

void packZlib(benchmark::State& state) {
  const Bytes frames = lobbyOf(kTables);
  Bytes body(compressBound(static_cast<uLong>(frames.size())));
  uLongf size = 0;
  for (auto _ : state) {
    size = static_cast<uLongf>(body.size());
    compress2(body.data(), &size, frames.data(), static_cast<uLong>(frames.size()), Z_DEFAULT_COMPRESSION);
    benchmark::DoNotOptimize(body.data());
  }
  show(state, frames.size(), size);
}

void packLibrary(benchmark::State& state) {
  const Bytes frames = lobbyOf(kTables);
  SerializeCommandBuf buffer(1024);
  std::size_t size = 0;
  for (auto _ : state) {
    const auto batch = packBatch(frames, buffer);
    size = batch.size();
    benchmark::DoNotOptimize(batch.data());
  }
  show(state, frames.size(), size);
}

void unpackZlib(benchmark::State& state) {
  const Bytes frames = lobbyOf(kTables);
  Bytes body(compressBound(static_cast<uLong>(frames.size())));
  auto size = static_cast<uLongf>(body.size());
  compress(body.data(), &size, frames.data(), static_cast<uLong>(frames.size()));
  Bytes out(frames.size());
  for (auto _ : state) {
    auto length = static_cast<uLongf>(out.size());
    uncompress(out.data(), &length, body.data(), size);
    benchmark::DoNotOptimize(out.data());
  }
  show(state, frames.size(), size);
}

void unpackLibrary(benchmark::State& state) {
  const Bytes frames = lobbyOf(kTables);
  SerializeCommandBuf buffer(1024);
  const auto frame = packBatch(frames, buffer);
  Bytes out;
  const auto batch = CommandHandle<SrvCompressedCommands>::create();
  for (auto _ : state) {
    DeserializeCommandBuf in(frame.data() + 6, static_cast<std::uint32_t>(frame.size() - 6));
    batch->deserialize(in);
    const auto wrong = unpackBatch(*batch, out);
    if (!wrong.empty()) state.SkipWithError("the batch is refused");
    benchmark::DoNotOptimize(out.data());
  }
  show(state, frames.size(), frame.size());
}

BENCHMARK(packZlib)->Name("batch_pack/zlib");
BENCHMARK(packLibrary)->Name("batch_pack/library");
BENCHMARK(unpackZlib)->Name("batch_unpack/zlib");
BENCHMARK(unpackLibrary)->Name("batch_unpack/library");

}  // namespace
}  // namespace poker::bench
