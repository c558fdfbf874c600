#include <examples/holdem/client/tournament/TourLobbyText.h>

#include <examples/holdem/client/terminal/Text.h>
#include <examples/holdem/client/terminal/TextTable.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <string_view>
#include <utility>

namespace poker::holdem {

namespace {

constexpr std::size_t kNameColumns = 24;
constexpr std::string_view kJoint = " · ";
constexpr std::string_view kCalledOff = "Called off";  // so begin the house's news of it

using enum TextTable::Align;

std::string nameText(const std::string& name) { return shortened(escaped(name), kNameColumns); }

std::string joined(const std::vector<std::string>& names) { return fmt::format("{}", fmt::join(names, ", ")); }

/// What a price is in cash; "free" when it is nothing.
std::string priceText(const TourMoneyChooser& price) {
  return price.cash() == RealMoneyType() ? "free" : price.cash().toString();
}

/// "10+1", "10", "free".
std::string costText(const TourMoneyChooser& buyIn, const TourMoneyChooser& fee) {
  if (fee.cash() == RealMoneyType()) return priceText(buyIn);
  return fmt::format("{}+{}", buyIn.cash().toString(), fee.cash().toString());
}

std::string startText(const COleDateTime& starts) {
  // A day count of 0 is what is said of one that has no time.
  return starts.days() == 0 || !starts.toSysTime() ? "by players" : starts.toIsoString();
}

std::string ofMost(std::uint32_t players, std::uint32_t most) {
  return most == 0 ? std::to_string(players) : fmt::format("{}/{}", players, most);
}

std::string prizeText(const PrizeSchemeInfoRow& row) {
  switch (row.type) {
    case PrizeType::Cash:
      return row.amount.toString();
    case PrizeType::TourMoney:
      return row.amount.toString() + " in tournament money";
    case PrizeType::Ticket:
      return "a ticket worth " + row.amount.toString();
    case PrizeType::Percent:
      return row.amount.toString() + " %";
  }
  return fmt::format("{} (prize of kind {})", row.amount.toString(), static_cast<unsigned>(row.type));
}

void add(std::vector<std::string>& lines, std::vector<std::string> more) {
  std::move(more.begin(), more.end(), std::back_inserter(lines));
}

void addSummary(std::vector<std::string>& lines, const TourPicture::Summary& summary) {
  const MultiTourneyInfo& numbers = summary.numbers;
  lines.push_back(fmt::format("  {} registered{}{} left{}{}{}{}{}{}{}{}", numbers.registeredPlayers, kJoint,
                              numbers.playersLeft, kJoint, counted(numbers.tables, "table"), kJoint,
                              counted(numbers.paidPlaces, "paid place"), kJoint, counted(numbers.rebuys, "re-buy"),
                              kJoint, counted(numbers.addOns, "add-on")));
  const MultiTourMoneyInfo& money = summary.money;
  std::string chips = fmt::format("  {} chips", money.buyInChips.toString());
  if (money.rebuyChips != RealMoneyType()) {
    chips += fmt::format("{}re-buy: {} for {}", kJoint, money.rebuyChips.toString(), priceText(money.rebuy));
  }
  if (money.addOnChips != RealMoneyType()) {
    chips += fmt::format("{}add-on: {} for {}", kJoint, money.addOnChips.toString(), priceText(money.addOn));
  }
  lines.push_back(std::move(chips));
  addForeign(lines, "registration", summary.start.registrationStarts);
  addForeign(lines, "... until", summary.start.registrationEnds);
  addForeign(lines, "start", summary.start.starts);
  if (summary.isRegistered) {
    lines.push_back(summary.ownTable == 0 ? "  You are registered."
                                          : fmt::format("  You play at table {}.", summary.ownTable));
  }
}

}  // namespace

std::string statusText(TOUR_NAMES::TourStatus status) {
  constexpr std::array<std::string_view, 7> kNames = {"none",    "announced", "registering", "seats are drawn",
                                                      "started", "suspended", "finished"};
  const auto number = static_cast<std::size_t>(status);
  return number < kNames.size() ? std::string(kNames[number]) : fmt::format("status {}", number);
}

std::string levelText(const SrvLevelSwitch& level, LimitType limit) {
  const std::string bets = fmt::format("{} {}/{}", limit == LimitType::FixedLimit ? "bets" : "blinds",
                                       level.getLowBet().toString(), level.getHiBet().toString());
  const bool byTime = level.getSwitchType() == TOUR_NAMES::SwitchType::ByTime;
  std::string left;
  if (level.getUnits() > 0) {
    left =
        byTime ? fmt::format("{} s", level.getUnits()) : counted(static_cast<std::uint64_t>(level.getUnits()), "hand");
  }
  if (level.isSwitching()) {
    return fmt::format("level {}: {}{}{}", level.getLevel(), bets, left.empty() ? "" : ", the next one in ", left);
  }
  return fmt::format("{}level {} is next: {}", left.empty() ? "" : "in " + left + ", ", level.getLevel(), bets);
}

std::string inOneLine(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  while (text.starts_with(' ')) text.erase(0, 1);
  for (std::size_t at; (at = text.find("  ")) != std::string::npos;) text.erase(at, 1);
  return text;
}

std::vector<std::string> tourListText(const std::vector<const TourListPicture*>& lists) {
  std::map<std::uint32_t, const TourListEntry*> all;
  for (const TourListPicture* list : lists) {
    for (const auto& [number, entry] : list->tournaments()) all[number] = &entry;
  }
  TextTable table({{"no.", Right},
                   {"tournament", Left},
                   {"game", Left},
                   {"cost", Right},
                   {"players", Right},
                   {"status", Left},
                   {"start", Left},
                   {"prizes", Left}});
  for (const auto& [number, entry] : all) {
    table.add({std::to_string(number), nameText(entry->name),
               entry->gameType == GameType::TexasHoldem
                   ? "hold'em"
                   : fmt::format("game {}", static_cast<unsigned>(entry->gameType)),
               costText(entry->cost.buyIn, entry->cost.fee), ofMost(entry->players, entry->maxPlayers),
               statusText(entry->status), startText(entry->starts), nameText(entry->prizes)});
  }
  std::vector<std::string> lines = table.lines();
  if (all.empty()) lines = {"  There is no tournament."};
  return lines;
}

std::vector<std::string> placesText(const TournamentDetailedInfo& details) {
  TextTable table({{"place", Right}, {"player", Left}, {"prize", Right}});
  for (std::size_t place = 0; place < details.players.size(); ++place) {
    const TourPlayerMoneyEntry& player = details.players[place];
    table.add({std::to_string(place + 1), nameText(player.player.name),
               player.money == RealMoneyType() ? "-" : player.money.toString()});
  }
  return details.players.empty() ? std::vector<std::string>{"  Nobody has played."} : table.lines();
}

bool isCalledOff(const TourPicture& picture) {
  return picture.prizes().rows().empty() && picture.text(MultiTourText::News).starts_with(kCalledOff);
}

std::string costText(const SrvTourMoney& cost) {
  const auto text = [](const TourMoneyType& price) {
    const std::string cash = price.cash.toString();
    if (price.tourMoney == RealMoneyType()) return cash;
    return fmt::format("{} (or {} in tournament money)", cash, price.tourMoney.toString());
  };
  if (cost.getTotal() == TourMoneyType()) return "cost: free";
  return fmt::format("cost: buy-in {}{}fee {}{}total {}", text(cost.getBuyIn()), kJoint, text(cost.getFee()), kJoint,
                     text(cost.getTotal()));
}

std::vector<std::string> tourText(const TourListEntry& entry, const TourPicture& picture,
                                  const TournamentDetailedInfo& details, const std::string& cost) {
  const bool isOff = details.finished && isCalledOff(picture);
  std::vector<std::string> lines = {fmt::format("  {} (number {}): {}, {} players, start {}", nameText(entry.name),
                                                entry.tournamentID, isOff ? "called off" : statusText(entry.status),
                                                ofMost(entry.players, entry.maxPlayers), startText(entry.starts)),
                                    "  " + cost};
  if (picture.summary()) addSummary(lines, *picture.summary());
  addForeign(lines, "", details.description);
  constexpr std::array<std::pair<MultiTourText, std::string_view>, 5> kTexts = {
      {{MultiTourText::Title, "title"},
       {MultiTourText::Description, "description"},
       {MultiTourText::Rules, "rules"},
       {MultiTourText::Blinds, "levels"},
       {MultiTourText::News, "news"}}};
  for (const auto& [key, about] : kTexts) addForeign(lines, about, picture.text(key));

  addForeign(lines, "prize fund", picture.fund().summary);
  constexpr std::array<std::string_view, 6> kFund = {"total", "buy-ins", "re-buys", "add-ons", "guaranteed", "added"};
  for (const auto& [key, text] : picture.fund().texts) {
    const auto number = static_cast<std::size_t>(key);
    addForeign(lines, number < kFund.size() ? kFund[number] : "", text);
  }
  if (!picture.prizes().rows().empty()) {
    TextTable prizes({{"place", Right}, {picture.prizes().isFinal() ? "prize" : "prize, so far", Left}});
    for (const auto& [place, row] : picture.prizes().rows()) prizes.add({std::to_string(place), prizeText(row)});
    add(lines, prizes.lines());
  }
  if (!picture.tables().empty()) {
    TextTable tables({{"table", Right}, {"", Left}, {"players", Right}, {"smallest", Right}, {"largest", Right}});
    for (const auto& [number, table] : picture.tables()) {
      tables.add({std::to_string(number), nameText(table.name), std::to_string(table.players),
                  table.smallestStack.toString(), table.largestStack.toString()});
    }
    add(lines, tables.lines());
  }
  if (isOff) return lines;  // nobody has a place
  if (details.finished) {
    add(lines, placesText(details));
  } else if (details.players.empty()) {
    lines.emplace_back("  Nobody has registered.");
  } else {
    TextTable players({{"player", Left}, {"chips", Right}, {"table", Right}});
    for (const TourPlayerMoneyEntry& player : details.players) {
      const auto place = picture.players().find(player.player.name);
      const bool hasTable = place != picture.players().end() && place->second.tableID != 0;
      players.add({nameText(player.player.name), player.money.toString(),
                   hasTable ? std::to_string(place->second.tableID) : "-"});
    }
    add(lines, players.lines());
  }
  return lines;
}

std::string leadersText(const TournamentDetailedInfo& details) {
  constexpr std::size_t kMost = 9;
  std::vector<std::string> leaders;
  for (const TourPlayerMoneyEntry& player : details.players) {
    if (leaders.size() == kMost) break;
    leaders.push_back(fmt::format("{} {}", nameText(player.player.name), player.money.toString()));
  }
  return fmt::format("{}", fmt::join(leaders, kJoint));
}

TableLeaders tableLeaders(const SrvUpdatePlayersMoney& chips) {
  constexpr std::size_t kMost = 3;
  std::vector<const SrvUpdatePlayersMoney::PlayerMoney*> players;
  for (const auto& player : chips.getPlayers()) players.push_back(&player);
  std::stable_sort(players.begin(), players.end(), [](const auto* a, const auto* b) { return a->money > b->money; });
  TableLeaders leaders;
  if (players.empty()) return leaders;
  if (players.size() == 1 || players[0]->money > players[1]->money) leaders.first = players[0]->name;
  players.resize(std::min(players.size(), kMost));
  std::vector<std::string> texts;
  for (const auto* player : players) {
    texts.push_back(fmt::format("{} {}", nameText(player->name), player->money.toString()));
  }
  leaders.text = fmt::format("table {}: {}", chips.getRequestedTable(), fmt::join(texts, kJoint));
  return leaders;
}

std::vector<std::string> changesText(const MultiTourneyInfo& before, const MultiTourneyInfo& now) {
  std::vector<std::string> lines;
  if (now.registeredPlayers != before.registeredPlayers) {
    lines.push_back(fmt::format("{} registered", ofMost(now.registeredPlayers, now.maxPlayers)));
  }
  if (now.tables != before.tables && now.tables != 0) {
    lines.push_back(fmt::format("{} left at {}", counted(now.playersLeft, "player"), counted(now.tables, "table")));
  }
  if (now.rebuys != before.rebuys) lines.push_back(counted(now.rebuys, "re-buy"));
  if (now.addOns != before.addOns) lines.push_back(counted(now.addOns, "add-on"));
  return lines;
}

std::vector<std::string> playersText(const TourPicture::Players& before, const TourPicture::Players& now,
                                     bool hasBegun) {
  std::vector<std::string> entered;
  std::vector<std::string> gone;
  std::map<std::uint32_t, std::vector<std::string>> seated;  // by table
  std::map<std::uint32_t, std::vector<std::string>> moved;
  for (const auto& [name, player] : now) {
    const auto known = before.find(name);
    const std::uint32_t table = known == before.end() ? 0 : known->second.tableID;
    if (known == before.end() && !hasBegun) entered.push_back(nameText(name));
    if (player.tableID != table && player.tableID != 0) {
      (table == 0 ? seated : moved)[player.tableID].push_back(nameText(name));
    }
  }
  for (const auto& [name, player] : before) {
    if (!now.contains(name)) gone.push_back(nameText(name));
  }
  std::vector<std::string> lines;
  if (!entered.empty()) lines.push_back(joined(entered) + (entered.size() == 1 ? " registers" : " register"));
  for (const auto& [table, names] : seated) lines.push_back(fmt::format("table {}: {}", table, joined(names)));
  if (!hasBegun && !gone.empty()) {
    lines.push_back(joined(gone) + (gone.size() == 1 ? " withdraws" : " withdraw"));
  } else if (!now.empty()) {
    // Of several at once, each has one of these places; which one, the details tell in the end.
    const std::string place = gone.size() == 1 ? std::to_string(now.size() + 1)
                                               : fmt::format("{}-{}", now.size() + 1, now.size() + gone.size());
    for (const std::string& name : gone) lines.push_back(fmt::format("{} is out: place {}", name, place));
  }
  for (const auto& [table, names] : moved) lines.push_back(fmt::format("to table {}: {}", table, joined(names)));
  return lines;
}

}  // namespace poker::holdem
