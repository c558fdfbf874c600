#include <examples/holdem/server/history/HandHistory.h>

#include <examples/holdem/server/history/RecordStory.h>
#include <examples/holdem/shared/LogLine.h>
#include <inspect/CommandText.h>

#include <algorithm>
#include <chrono>
#include <optional>
#include <string>

namespace poker::holdem {

namespace {

using Time = HandFilter::Time;

/// Hands' times are whole seconds. Nothing when the client sent no time.
std::optional<Time> secondOf(const COleDateTime& time) {
  const auto exact = time.toSysTime();
  if (!exact) return std::nullopt;
  return std::chrono::floor<std::chrono::seconds>(*exact);
}

/// @return nothing when no hand can meet it all: another game than this house's, or a bound that is no time
std::optional<HandFilter> filterFrom(const ReplayRequestInfo& request) {
  HandFilter filter;
  if (request.has(ReplayRequestInfo::kGameType) && request.gameType() != GameType::TexasHoldem) return std::nullopt;
  if (request.has(ReplayRequestInfo::kGameID)) filter.game = request.gameID();
  if (request.has(ReplayRequestInfo::kOpponent)) filter.opponent = request.opponent();
  if (request.has(ReplayRequestInfo::kFrom)) {
    filter.from = secondOf(request.from());
    if (!filter.from) return std::nullopt;
  }
  if (request.has(ReplayRequestInfo::kTo)) {
    filter.to = secondOf(request.to());
    if (!filter.to) return std::nullopt;
  }
  if (request.has(ReplayRequestInfo::kReplays)) {
    auto& spans = filter.playedAt.emplace();
    for (const ReplayInfo& replay : request.replays()) {
      const auto first = secondOf(replay.started());
      const auto last = secondOf(replay.ended());
      if (first && last) spans.push_back({*first, *last});
    }
  }
  return filter;
}

}  // namespace

std::vector<std::uint64_t> HandHistory::find(const Account& player, const ReplayRequestInfo& request,
                                             std::size_t most) {
  const std::optional<HandFilter> filter = filterFrom(request);
  if (!filter) return {};
  if (request.has(ReplayRequestInfo::kMostHands)) most = std::min<std::size_t>(most, request.mostHands());
  return bank_.handsOf(player.id, most, *filter);
}

StringVector HandHistory::texts(const Account& player, const ReplayRequestInfo& request) {
  return write(player, find(player, request, kMostTexts));
}

std::vector<std::uint32_t> HandHistory::numbers(const Account& player, const ReplayRequestInfo& request) {
  const std::vector<std::uint64_t> found = find(player, request, kMostNumbers);
  std::vector<std::uint32_t> numbers;
  numbers.reserve(found.size());
  std::transform(found.rbegin(), found.rend(), std::back_inserter(numbers),
                 [](std::uint64_t number) { return static_cast<std::uint32_t>(number); });
  return numbers;
}

StringVector HandHistory::textOf(const Account& player, std::uint64_t number) { return write(player, {number}); }

StringVector HandHistory::latestAt(const Account& player, std::uint32_t game) {
  HandFilter filter;
  filter.game = game;
  return write(player, bank_.handsOf(player.id, kMostTexts, filter));
}

StringVector HandHistory::latestOf(const Account& player, std::uint32_t tournament) {
  if (tournament == 0) return {};  // ring games have that one
  HandFilter filter;
  filter.tournament = tournament;
  return write(player, bank_.handsOf(player.id, kMostTexts, filter));
}

StringVector HandHistory::write(const Account& player, const std::vector<std::uint64_t>& newestFirst) {
  StringVector texts;
  std::size_t bytes = 0;
  for (const std::uint64_t number : newestFirst) {
    const std::optional<std::string> record = bank_.handRecord(number, player.id);
    if (!record) continue;
    try {
      std::string text = toText(storyOf(*record, player.name));
      bytes += text.size();
      if (bytes > kMostBytes) break;
      texts.push_back(std::move(text));
    } catch (const HandRecordError& error) {
      logLine(log_, 0, "bad-record hand={} error={}", number, quoted(error.what()));
    }
  }
  std::reverse(texts.begin(), texts.end());
  return texts;
}

}  // namespace poker::holdem
