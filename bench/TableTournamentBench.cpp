// What a tournament of 5,000 players costs the server that shows it, at 9 seats a table.
//
//   whole     the whole picture for somebody who comes to look, encoded
//   packed    the same as one batch
//   changes   what one hand has changed, for one of those who follow: a table's stacks, a player who is out
//   nothing   the answer to who is up to date
//
// Counter: bytes that travel.

#include <examples/holdem/server/tournament/TourBoard.h>
#include <hostkit/Batch.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

namespace poker::bench {
namespace {

using namespace holdem;

constexpr std::uint32_t kTourPlayers = 5000;
constexpr std::uint32_t kSeats = 9;
constexpr std::uint32_t kFirstTable = 10'001;

std::string nameOf(std::uint32_t player) { return "Player " + std::to_string(player); }

MultiTourTableEntry tableOf(std::uint32_t number, std::uint32_t stack) {
  MultiTourTableEntry table;
  table.tableID = kFirstTable + number;
  table.players = kSeats;
  table.smallestStack = RealMoneyType::fromUnits(stack);
  table.largestStack = RealMoneyType::fromUnits(stack * 3);
  table.name = "Sunday, table " + std::to_string(number + 1);
  return table;
}

TourBoard fullBoard() {
  TourBoard board(1);
  for (std::uint32_t player = 0; player < kTourPlayers; ++player) {
    MultiTourPlayerEntry entry;
    entry.tableID = kFirstTable + player / kSeats;
    entry.player.name = nameOf(player);
    entry.player.playerID = player + 1;
    entry.player.city = player % 3 == 0 ? "Ghent" : "";
    board.setPlayer(entry);
  }
  for (std::uint32_t table = 0; table <= kTourPlayers / kSeats; ++table) board.setTable(tableOf(table, 1500));
  board.setText(MultiTourText::Title, "Sunday");
  return board;
}

/// Sends nowhere; counts.
struct Sink {
  std::size_t bytes = 0;
  std::vector<std::uint8_t> frames;
  Outbox outbox{[this](const ConnectionID&, std::span<const std::uint8_t> frame) {
    bytes += frame.size();
    frames.assign(frame.begin(), frame.end());
  }};
};

void whole(benchmark::State& state) {
  const TourBoard board = fullBoard();
  Sink sink;
  for (auto _ : state) {
    sink.bytes = 0;
    sink.outbox.run([&] { board.tellAll(sink.outbox, ConnectionID(1)); });
  }
  state.counters["bytes"] = static_cast<double>(sink.bytes);
}
BENCHMARK(whole)->Name("tournament_whole")->Unit(benchmark::kMicrosecond);

void packed(benchmark::State& state) {
  const TourBoard board = fullBoard();
  Sink sink;
  sink.outbox.run([&] { board.tellAll(sink.outbox, ConnectionID(1)); });
  SerializeCommandBuf buffer(1024);
  std::size_t bytes = 0;
  for (auto _ : state) bytes = packBatch(sink.frames, buffer).size();
  state.counters["bytes"] = static_cast<double>(bytes);
}
BENCHMARK(packed)->Name("tournament_packed")->Unit(benchmark::kMicrosecond);

void changes(benchmark::State& state) {
  TourBoard board = fullBoard();
  Sink sink;
  std::uint32_t hand = 0;
  for (auto _ : state) {
    const TourBoard::Versions known = board.versions();
    board.setTable(tableOf(hand % 500, 1000 + hand % 7));
    if (hand < kTourPlayers) board.removePlayer(nameOf(hand));
    ++hand;
    sink.bytes = 0;
    sink.outbox.run([&] { board.tellChanges(sink.outbox, ConnectionID(1), known); });
  }
  state.counters["bytes"] = static_cast<double>(sink.bytes);
}
// So often that there are players left to go.
BENCHMARK(changes)->Name("tournament_changes")->Unit(benchmark::kMicrosecond)->Iterations(kTourPlayers / 2);

void nothing(benchmark::State& state) {
  const TourBoard board = fullBoard();
  Sink sink;
  for (auto _ : state) sink.outbox.run([&] { board.tellChanges(sink.outbox, ConnectionID(1), board.versions()); });
  state.counters["bytes"] = static_cast<double>(sink.bytes);
}
BENCHMARK(nothing)->Name("tournament_nothing")->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace poker::bench
