// What it costs to ask for hands that were played, in a bank's file with 100,000 hands of nine players. Each player was in
// all of them, but for one who was in every thousandth.
//
//   latest    the texts of the latest hands, as many as an answer holds
//   one       the text of one hand
//   numbers   the numbers of the latest hands, as many as an answer holds
//   old       the numbers of ten hands by a time long ago
//   opponent  the numbers of the hands with the rare player
//   none      the numbers of hands at a table where there were none: a walk through all of the player's hands

#include "TableBenchHands.h"

#include <examples/holdem/server/history/HandHistory.h>

#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>

namespace poker::bench {
namespace {

constexpr std::int64_t kHandsInBank = 100'000;
constexpr std::int64_t kFirstHand = 1'700'000'000;  // each lasts a minute
constexpr std::int64_t kHandTime = 60;

/// The bank, whose file is gone when the process ends.
class Archive {
 public:
  Archive() {
    // Beside the program: where temporary files live may be memory.
    file_ = std::filesystem::read_symlink("/proc/self/exe").parent_path() / "bench_history.bank";
    remove();
    bank_.emplace(BankSettings{file_, 1});
    history_.emplace(*bank_, *Log::getLog("bench", LogCategory::Network));
    std::vector<AccountID> accounts;
    for (std::uint8_t seat = 0; seat < kPlayers; ++seat) {
      const auto account = accountOf(seat);
      accounts.push_back(*bank_->openAccount(account.userName, account.password, {}, kBuyIn));
      bank_->sitDown(accounts.back(), tableSettings().gameID, seat, kBuyIn);
    }
    player = {accounts.front(), accountOf(0).userName, kZeroMoney};
    const std::vector<std::string>& records = playedHands().records;
    FinishedHand hand{tableSettings().gameID, 0, {}, {}, kZeroMoney, {}, {}};
    for (std::int64_t i = 0; i < kHandsInBank; ++i) {
      hand.number = static_cast<std::uint64_t>(i) + 1;
      hand.record = records[hand.number % records.size()];
      hand.began = time(i);
      hand.ended = time(i + 1);
      hand.players.clear();
      for (const AccountID account : accounts) {
        if (account != accounts.back() || i % 1000 == 0) hand.players.push_back({account, kBuyIn, kBuyIn, false});
      }
      bank_->finishHand(hand);
    }
  }
  ~Archive() {
    history_.reset();
    bank_.reset();
    remove();
  }

  HandHistory& history() { return *history_; }
  static std::chrono::sys_seconds time(std::int64_t hand) {
    return std::chrono::sys_seconds(std::chrono::seconds(kFirstHand + hand * kHandTime));
  }

  Account player;

 private:
  void remove() const {
    for (const char* part : {"", "-wal", "-shm"}) std::filesystem::remove(file_.string() + part);
  }

  std::filesystem::path file_;
  std::optional<Bank> bank_;
  std::optional<HandHistory> history_;
};

Archive& archive() {
  static Archive archive;
  return archive;
}

/// @param ask    the answer's list
/// @param least  so many there must be, and not many more
template <class Ask>
void measure(benchmark::State& state, std::size_t least, const Ask& ask) {
  archive();
  std::size_t found = 0;
  for (auto _ : state) found = ask().size();
  if (found < least || found > least + least / 2 + 100) state.SkipWithError("not the hands that were asked for");
  state.SetItemsProcessed(state.iterations());
  state.counters["hands"] = static_cast<double>(found);
}

void numbers(benchmark::State& state, std::size_t least, const ReplayRequestInfo& request) {
  measure(state, least, [&] { return archive().history().numbers(archive().player, request); });
}

void latest(benchmark::State& state) {
  measure(state, 10, [] { return archive().history().texts(archive().player, {}); });
}
void one(benchmark::State& state) {
  measure(state, 1, [] { return archive().history().textOf(archive().player, kHandsInBank / 2); });
}
void latestNumbers(benchmark::State& state) { numbers(state, HandHistory::kMostNumbers, {}); }
void old(benchmark::State& state) {
  ReplayRequestInfo request;
  request.setFrom(COleDateTime::fromSysTime(Archive::time(100)));
  request.setTo(COleDateTime::fromSysTime(Archive::time(109)));
  numbers(state, 10, request);
}
void opponent(benchmark::State& state) {
  ReplayRequestInfo request;
  request.setOpponent(accountOf(kPlayers - 1).userName);
  numbers(state, 100, request);
}
void none(benchmark::State& state) {
  ReplayRequestInfo request;
  request.setGameID(99);
  numbers(state, 0, request);
}

BENCHMARK(latest)->Name("history/latest");
BENCHMARK(one)->Name("history/one");
BENCHMARK(latestNumbers)->Name("history/numbers");
BENCHMARK(old)->Name("history/old");
BENCHMARK(opponent)->Name("history/opponent");
BENCHMARK(none)->Name("history/none");

}  // namespace
}  // namespace poker::bench
