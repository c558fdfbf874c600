#include <examples/holdem/client/lobby/LobbyText.h>

#include <CommandProcessor/types/FieldJson.h>
#include <examples/holdem/client/terminal/Text.h>
#include <examples/holdem/client/terminal/TextTable.h>
#include <examples/holdem/shared/Protocol.h>
#include <hostkit/CommandHandle.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace poker::holdem {

namespace {

constexpr std::size_t kNameColumns = 24;
constexpr std::size_t kMostWaitingShown = 20;
constexpr std::string_view kJoint = " · ";

using enum TextTable::Align;

std::string nameText(const std::string& name) { return shortened(escaped(name), kNameColumns); }

std::string gameText(GameType game, LimitType limit) {
  constexpr std::array<std::string_view, 7> kGames = {"no game",     "hold'em",      "omaha",      "omaha hi-lo",
                                                      "7-card stud", "7-card hi-lo", "5-card draw"};
  constexpr std::array<std::string_view, 4> kLimits = {"", "fixed-limit ", "pot-limit ", "no-limit "};
  const auto number = static_cast<std::size_t>(game);
  const auto limitNumber = static_cast<std::size_t>(limit);
  return fmt::format("{}{}", limitNumber < kLimits.size() ? kLimits[limitNumber] : "",
                     number < kGames.size() ? std::string(kGames[number]) : fmt::format("game {}", number));
}

std::string stateText(UserState state) {
  constexpr std::array<std::string_view, 9> kStates = {
      "",       "seat is held", "waiting",  "waits for the blind", "playing",
      "folded", "all-in",       "sits out", "connection lost"};
  const auto number = static_cast<std::size_t>(state);
  return number < kStates.size() ? std::string(kStates[number]) : fmt::format("state {}", number);
}

/// A number that is nothing to talk about when it is 0.
std::string orDash(std::uint32_t number, std::string text) { return number == 0 ? "-" : text; }

std::string flagsText(const ServerTableEntry& table) {
  std::string text;
  const auto add = [&](ServerTableEntry::Flag flag, std::string_view word) {
    if ((table.flags & flag) != 0) text += fmt::format("{}{}", text.empty() ? "" : ", ", word);
  };
  add(ServerTableEntry::PasswordProtected, "private");
  add(ServerTableEntry::RealMoney, "real money");
  add(ServerTableEntry::Closing, "closing");
  return text;
}

std::string countersText(const SrvServerCountersInfo::Counters& counters) {
  struct Known {
    std::uint8_t key;
    std::string_view what;
  };
  constexpr std::array kKnown = {Known{kPlayersLoggedOn, "logged on"}, Known{kPlayersSeated, "on seats"},
                                 Known{kTables, "tables"}, Known{kTablesPlaying, "hands on"},
                                 Known{kHandsPlayed, "hands played"}};
  std::string text;
  for (const auto& [key, what] : kKnown) {
    const auto counter = counters.find(key);
    if (counter != counters.end()) {
      text += fmt::format("{}{} {}", text.empty() ? "  " : kJoint, counter->second, what);
    }
  }
  return text;
}

/// The text in lines of their own, what it is about before the first.
void addForeign(std::vector<std::string>& lines, std::string_view about, std::string_view text) {
  const std::string safe = escapedLines(text);
  std::string_view rest = safe;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    lines.push_back(fmt::format("  {:<13}{}", about, rest.substr(0, end)));
    rest.remove_prefix(std::min(end + 1, rest.size()));
    about = "";
  }
}

}  // namespace

std::vector<std::string> lobbyText(const LobbyPicture& picture) {
  TextTable table({{"no.", Right},
                   {"table", Left},
                   {"game", Left},
                   {"stakes", Right},
                   {"seats", Right},
                   {"waiting", Right},
                   {"avg. pot", Right},
                   {"flop", Right},
                   {"hands/h", Right},
                   {"", Left}});
  for (const auto& [gameID, entry] : picture.tables()) {
    table.add({std::to_string(gameID), nameText(entry.tableName), gameText(entry.gameType, entry.limitType),
               entry.lowBet.toString() + "/" + entry.highBet.toString(),
               fmt::format("{}/{}", entry.players, entry.maxSeats), std::to_string(entry.waitListLength),
               orDash(entry.averagePot, RealMoneyType::fromHundredths(entry.averagePot).toString()),
               orDash(entry.playersPerFlop, fmt::format("{} %", entry.playersPerFlop)),
               orDash(entry.handsPerHour, std::to_string(entry.handsPerHour)), flagsText(entry)});
  }
  std::vector<std::string> lines = table.lines();
  if (picture.tables().empty()) lines.emplace_back("  There is no table.");
  if (const std::string counters = countersText(picture.counters()); !counters.empty()) lines.push_back(counters);
  constexpr std::array<std::string_view, 5> kAbout = {"", "news", "tournaments", "promotions", "maintenance"};
  for (const auto& [number, text] : picture.news())
    addForeign(lines, kAbout.at(static_cast<std::size_t>(number)), text);
  return lines;
}

std::vector<std::string> detailsText(const TableInfoDetailed& details) {
  const bool isFixed = details.limitType == LimitType::FixedLimit;
  std::vector<std::string> lines = {
      fmt::format("  {} (number {}): {}, {} {}/{}, buy-in {} to {}, {} seats, {} s a turn{}",
                  nameText(details.tableName), details.gameID, gameText(details.gameType, details.limitType),
                  isFixed ? "bets" : "blinds", (isFixed ? details.lowBet : details.smallBlind).toString(),
                  (isFixed ? details.highBet : details.bigBlind).toString(), details.minBuyIn.toString(),
                  details.maxBuyIn.toString(), details.maxSeats, details.replyTime,
                  details.passwordProtected ? ", private" : ""),
      fmt::format("  {}{}average pot {}{}{} % see the flop{}{} hands an hour{}{} looking on",
                  details.handNumber == 0 ? "no hand is on" : fmt::format("hand {} is on", details.handNumber), kJoint,
                  details.averagePot.toString(), kJoint, details.playersPerFlop, kJoint, details.handsPerHour, kJoint,
                  details.observers)};
  TextTable table({{"seat", Right}, {"player", Left}, {"chips", Right}, {"", Left}});
  for (const TablePlayerInfo& player : details.players) {
    table.add({std::to_string(player.seatID.value()), nameText(player.displayName), player.money.toString(),
               stateText(player.state)});
  }
  if (details.players.empty()) {
    lines.emplace_back(details.passwordProtected ? "  Who sits here is not told." : "  Nobody sits here.");
  } else {
    for (std::string& line : table.lines()) lines.push_back(std::move(line));
  }
  if (!details.waitList.empty()) {
    std::string waiting;
    for (const std::string& name : details.waitList) {
      if (&name == &details.waitList[0] + kMostWaitingShown) {
        waiting += fmt::format(" and {} more", details.waitList.size() - kMostWaitingShown);
        break;
      }
      waiting += fmt::format("{}{}", waiting.empty() ? "" : ", ", nameText(name));
    }
    lines.push_back("  waiting: " + waiting);
  }
  return lines;
}

std::string lobbyJson(const LobbyPicture& picture) {
  ServerUpdateInfo update;
  for (const auto& [gameID, entry] : picture.tables()) update.tables.push_back(entry);
  update.version = picture.version();
  const CommandHandle<SrvServerInfo> tables = make<SrvServerInfo>(update);
  const CommandHandle<SrvServerCountersInfo> counters = make<SrvServerCountersInfo>();
  counters->counters() = picture.counters();
  const CommandHandle<SrvNews> news = make<SrvNews>();
  for (const auto& [number, text] : picture.news()) news->addMsg(number, text.c_str());
  FieldsToJson json;
  tables->visitFields(json);
  counters->visitFields(json);
  news->visitFields(json);
  return json.take();
}

std::string detailsJson(const TableInfoDetailed& details) { return fieldsToJson(*make<SrvGameInfo>(details)); }

}  // namespace poker::holdem
