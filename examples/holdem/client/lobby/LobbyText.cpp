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
constexpr std::size_t kLeastNameColumns = 8;
constexpr std::size_t kListColumns = 80;
constexpr std::size_t kMostWaitingShown = 20;
constexpr std::string_view kJoint = " · ";

using enum TextTable::Align;

std::string nameText(const std::string& name, std::size_t columns = kNameColumns) {
  return shortened(escaped(name), columns);
}

std::string gameText(GameType game, LimitType limit) {
  constexpr std::array<std::string_view, 7> kGames = {"no game",     "hold'em",      "omaha",      "omaha hi-lo",
                                                      "7-card stud", "7-card hi-lo", "5-card draw"};
  constexpr std::array<std::string_view, 4> kLimits = {"", "fixed-limit ", "pot-limit ", "no-limit "};
  const auto number = static_cast<std::size_t>(game);
  const auto limitNumber = static_cast<std::size_t>(limit);
  return fmt::format("{}{}", limitNumber < kLimits.size() ? kLimits[limitNumber] : "",
                     number < kGames.size() ? std::string(kGames[number]) : fmt::format("game {}", number));
}

/// The same in the words that fit a column: "NL hold'em".
std::string shortGameText(GameType game, LimitType limit) {
  constexpr std::array<std::string_view, 4> kLimits = {"", "FL ", "PL ", "NL "};
  const auto number = static_cast<std::size_t>(limit);
  return std::string(number < kLimits.size() ? kLimits[number] : "") + gameText(game, LimitType{});
}

std::string stateText(UserState state) {
  constexpr std::array<std::string_view, 9> kStates = {
      "",       "seat is held", "waiting",  "waits for the blind", "playing",
      "folded", "all-in",       "sits out", "connection lost"};
  const auto number = static_cast<std::size_t>(state);
  return number < kStates.size() ? std::string(kStates[number]) : fmt::format("state {}", number);
}

/// A number that is nothing to talk about when it is 0.
std::string orDash(std::uint32_t number, std::string_view unit = "") {
  return number == 0 ? "-" : fmt::format("{}{}", number, unit);
}

/// In whole units, unless it is but a few.
std::string averageText(RealMoneyType average) {
  if (average == kZeroMoney) return "-";
  constexpr auto kFew = RealMoneyType::fromUnits(10);
  if (average < kFew) return average.toString();
  return fmt::format("{}", (average.hundredths() + 50) / 100);
}

std::string flagsText(const ServerTableEntry& table) {
  // Nobody sits down any more at one that is closing, whatever else it is.
  if ((table.flags & ServerTableEntry::Closing) != 0) return "closing";
  std::string text;
  const auto add = [&](ServerTableEntry::Flag flag, std::string_view word) {
    if ((table.flags & flag) != 0) text += fmt::format("{}{}", text.empty() ? "" : ", ", word);
  };
  add(ServerTableEntry::PasswordProtected, "private");
  add(ServerTableEntry::RealMoney, "real money");
  return text;
}

std::string countersText(const SrvServerCountersInfo::Counters& counters) {
  struct Known {
    std::uint8_t key;
    std::string_view what;  // that is counted; none: players
    std::string_view rest = "";
  };
  constexpr std::array kKnown = {Known{kPlayersLoggedOn, "", "logged on"}, Known{kPlayersSeated, "", "on seats"},
                                 Known{kTables, "table"}, Known{kTablesPlaying, "hand", "on"},
                                 Known{kHandsPlayed, "hand", "played"}};
  std::string text;
  for (const auto& [key, what, rest] : kKnown) {
    const auto counter = counters.find(key);
    if (counter == counters.end()) continue;
    const std::string number = std::to_string(counter->second);
    text += fmt::format("{}{}{}{}", text.empty() ? "  " : kJoint,
                        what.empty() ? number : counted(counter->second, what), rest.empty() ? "" : " ", rest);
  }
  return text;
}

std::vector<std::string> listLines(const LobbyPicture::Tables& tables, std::size_t nameColumns) {
  TextTable table({{"no.", Right},
                   {"table", Left},
                   {"game", Left},
                   {"stakes", Right},
                   {"seats", Right},
                   {"wait", Right},
                   {"pot", Right},
                   {"flop", Right},
                   {"hands/h", Right},
                   {"", Left}});
  for (const auto& [gameID, entry] : tables) {
    table.add({std::to_string(gameID), nameText(entry.tableName, nameColumns),
               shortGameText(entry.gameType, entry.limitType), entry.lowBet.toString() + "/" + entry.highBet.toString(),
               fmt::format("{}/{}", entry.players, entry.maxSeats), std::to_string(entry.waitListLength),
               averageText(RealMoneyType::fromHundredths(entry.averagePot)), orDash(entry.playersPerFlop, "%"),
               orDash(entry.handsPerHour), flagsText(entry)});
  }
  return table.lines();
}

}  // namespace

std::vector<std::string> lobbyText(const LobbyPicture& picture) {
  std::size_t nameColumns = 0;
  for (const auto& [gameID, entry] : picture.tables()) {
    nameColumns = std::max(nameColumns, nameText(entry.tableName).size());
  }
  std::vector<std::string> lines = listLines(picture.tables(), nameColumns);
  std::size_t width = 0;
  for (const std::string& line : lines) width = std::max(width, columnsOf(line));
  if (width > kListColumns && nameColumns > kLeastNameColumns) {
    const std::size_t cut = std::min(width - kListColumns, nameColumns - kLeastNameColumns);
    lines = listLines(picture.tables(), nameColumns - cut);
  }
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
      fmt::format("  {} (number {}): {}, {} {}/{}, buy-in {} to {}, {}, {} s a turn{}", nameText(details.tableName),
                  details.gameID, gameText(details.gameType, details.limitType), isFixed ? "bets" : "blinds",
                  (isFixed ? details.lowBet : details.smallBlind).toString(),
                  (isFixed ? details.highBet : details.bigBlind).toString(), details.minBuyIn.toString(),
                  details.maxBuyIn.toString(), counted(details.maxSeats, "seat"), details.replyTime,
                  details.passwordProtected ? ", private" : ""),
      fmt::format("  {}{}average pot {}{}{} see the flop{}{} an hour{}{} looking on",
                  details.handNumber == 0 ? "no hand is on" : fmt::format("hand {} is on", details.handNumber), kJoint,
                  averageText(details.averagePot), kJoint, orDash(details.playersPerFlop, "%"), kJoint,
                  details.handsPerHour == 0 ? "- hands" : counted(details.handsPerHour, "hand"), kJoint,
                  details.observers)};
  TextTable table({{"seat", Right}, {"player", Left}, {"chips", Right}, {"", Left}});
  for (const TablePlayerInfo& player : details.players) {
    const bool hasStack =
        player.money != kZeroMoney || (player.state != UserState::Reserved && !details.passwordProtected);
    table.add({std::to_string(player.seatID.value()), nameText(player.displayName),
               hasStack ? player.money.toString() : "-", stateText(player.state)});
  }
  if (details.players.empty()) {
    lines.emplace_back("  Nobody sits here.");
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

std::vector<std::string> departures(const TableInfoDetailed& before, const TableInfoDetailed& now) {
  std::vector<std::string> lines;
  for (const TablePlayerInfo& player : before.players) {
    const bool isHere = std::any_of(now.players.begin(), now.players.end(), [&](const TablePlayerInfo& other) {
      return other.displayName == player.displayName;
    });
    if (isHere) continue;
    lines.push_back(
        player.state == UserState::Reserved
            ? fmt::format("Seat {} is held for {} no more.", player.seatID.value(), nameText(player.displayName))
            : fmt::format("{} has left seat {}.", nameText(player.displayName), player.seatID.value()));
  }
  for (const std::string& name : before.waitList) {
    if (std::find(now.waitList.begin(), now.waitList.end(), name) == now.waitList.end()) {
      lines.push_back(nameText(name) + " waits no more.");
    }
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
