#include <examples/holdem/server/TableText.h>

#include <examples/holdem/server/KeyValueText.h>

#include <fmt/format.h>

#include <stdexcept>
#include <tuple>

namespace poker::holdem {

namespace {

void readField(std::string_view key, std::string_view value, TableSettings& table) {
  if (key == "name") {
    table.name = nameFromText("a table", value, kLongestTableName);
  } else if (key == "game") {
    table.stakes.limit = limitFromText(key, value);
  } else if (key == "blinds") {
    std::tie(table.stakes.smallBlind, table.stakes.bigBlind) = amountsFromText(key, value, '/', "1/2");
  } else if (key == "seats") {
    table.seats = numberFromText(key, value, 2, kMaxSeats);
  } else if (key == "buy-in") {
    std::tie(table.minBuyIn, table.maxBuyIn) = amountsFromText(key, value, '/', "1/2");
  } else if (key == "password") {
    table.password = value;
  } else {
    complain(fmt::format("\"{}\" is none of name, game, blinds, seats, buy-in and password", key));
  }
}

}  // namespace

TableSettings tableFromText(std::string_view text, const TableSettings& usual) {
  TableSettings table = usual;
  try {
    forEachKeyValue(text, [&](std::string_view key, std::string_view value) { readField(key, value, table); });
    checkTable(table);
  } catch (const std::invalid_argument& error) {
    throw std::invalid_argument(fmt::format("table \"{}\": {}", withoutPassword(text), error.what()));
  }
  return table;
}

void checkTable(const TableSettings& table) {
  const Stakes& stakes = table.stakes;
  if (stakes.smallBlind > stakes.bigBlind || stakes.smallBlind <= kZeroMoney) {
    complain("the small blind must lie between 0.01 and the big blind");
  }
  if (table.minBuyIn > table.maxBuyIn || table.minBuyIn < stakes.bigBlind) {
    complain("the least buy-in must lie between the big blind and the most");
  }
  if (table.startWith > table.seats) complain("the first hand waits for more players than there are seats");
  if (table.replyTime.count() == 0) complain("the reply time must be above 0");
}

}  // namespace poker::holdem
