#include <examples/holdem/server/TableText.h>

#include <examples/holdem/shared/MoneyText.h>

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <vector>

namespace poker::holdem {

namespace {

[[noreturn]] void complain(const std::string& what) { throw std::invalid_argument(what); }

/// "1/2" as 1 and 2.
void readPair(std::string_view key, std::string_view value, RealMoneyType& first, RealMoneyType& second) {
  const std::size_t slash = value.find('/');
  const auto left = moneyFromText(value.substr(0, slash));
  const auto right = slash == value.npos ? std::nullopt : moneyFromText(value.substr(slash + 1));
  if (!left || !right) complain(fmt::format("{} takes two amounts, such as 1/2, and not \"{}\"", key, value));
  first = *left;
  second = *right;
}

void readField(std::string_view key, std::string_view value, TableSettings& table) {
  if (key == "name") {
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; };
    if (value.empty() || value.size() > kLongestTableName || std::any_of(value.begin(), value.end(), isControl)) {
      complain(fmt::format("a table's name has 1 to {} bytes, and no control characters", kLongestTableName));
    }
    table.name = value;
  } else if (key == "game") {
    if (value != "no-limit" && value != "fixed-limit") {
      complain(fmt::format("game is no-limit or fixed-limit, and not \"{}\"", value));
    }
    table.stakes.limit = value == "no-limit" ? LimitType::NoLimit : LimitType::FixedLimit;
  } else if (key == "blinds") {
    readPair(key, value, table.stakes.smallBlind, table.stakes.bigBlind);
  } else if (key == "seats") {
    const auto [end, failure] = std::from_chars(value.data(), value.data() + value.size(), table.seats);
    if (failure != std::errc() || end != value.data() + value.size() || table.seats < 2 || table.seats > kMaxSeats) {
      complain(fmt::format("seats is a number from 2 to {}, and not \"{}\"", kMaxSeats, value));
    }
  } else if (key == "buy-in") {
    readPair(key, value, table.minBuyIn, table.maxBuyIn);
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
    std::vector<std::string_view> seen;
    for (std::string_view rest = text;;) {
      const std::size_t comma = rest.find(',');
      const std::string_view field = rest.substr(0, comma);
      const std::size_t equals = field.find('=');
      if (equals == field.npos) complain(fmt::format("\"{}\" is not written as KEY=VALUE", field));
      const std::string_view key = field.substr(0, equals);
      if (std::find(seen.begin(), seen.end(), key) != seen.end()) complain(fmt::format("{} stands there twice", key));
      seen.push_back(key);
      readField(key, field.substr(equals + 1), table);
      if (comma == rest.npos) break;
      rest.remove_prefix(comma + 1);
    }
    checkTable(table);
  } catch (const std::invalid_argument& error) {
    throw std::invalid_argument(fmt::format("table \"{}\": {}", text, error.what()));
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
