#include <examples/holdem/server/KeyValueText.h>

#include <examples/holdem/shared/MoneyText.h>

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <vector>

namespace poker::holdem {

namespace {

constexpr std::string_view kPassword = "password";

}  // namespace

void complain(const std::string& what) { throw std::invalid_argument(what); }

void forEachKeyValue(std::string_view text,
                     const std::function<void(std::string_view key, std::string_view value)>& read) {
  std::vector<std::string_view> seen;
  for (std::string_view rest = text;;) {
    const std::size_t comma = rest.find(',');
    const std::string_view field = rest.substr(0, comma);
    const std::size_t equals = field.find('=');
    if (equals == field.npos) {
      const bool isOfPassword = !seen.empty() && seen.back() == kPassword;  // one with a comma in it
      complain(isOfPassword ? "what follows the password is not written as KEY=VALUE"
                            : fmt::format("\"{}\" is not written as KEY=VALUE", field));
    }
    const std::string_view key = field.substr(0, equals);
    if (std::find(seen.begin(), seen.end(), key) != seen.end()) complain(fmt::format("{} stands there twice", key));
    seen.push_back(key);
    read(key, field.substr(equals + 1));
    if (comma == rest.npos) break;
    rest.remove_prefix(comma + 1);
  }
}

std::string withoutPassword(std::string_view text) {
  std::string shown;
  bool isPassword = false;
  for (std::string_view rest = text;;) {
    const std::size_t comma = rest.find(',');
    const std::string_view field = rest.substr(0, comma);
    const std::size_t equals = field.find('=');
    const bool isRest = isPassword && equals == field.npos;
    isPassword = isRest || field.substr(0, equals) == kPassword;
    if (!isRest) {
      if (field.data() != text.data()) shown += ',';
      shown += isPassword && equals != field.npos ? fmt::format("{}=***", kPassword) : std::string(field);
    }
    if (comma == rest.npos) break;
    rest.remove_prefix(comma + 1);
  }
  return shown;
}

std::uint64_t numberFromText(std::string_view key, std::string_view value, std::uint64_t least, std::uint64_t most) {
  std::uint64_t number = 0;
  const auto [end, failure] = std::from_chars(value.data(), value.data() + value.size(), number);
  if (failure != std::errc() || end != value.data() + value.size() || number < least || number > most) {
    complain(fmt::format("{} is a number from {} to {}, and not \"{}\"", key, least, most, value));
  }
  return number;
}

std::pair<RealMoneyType, RealMoneyType> amountsFromText(std::string_view key, std::string_view value, char separator,
                                                        std::string_view example) {
  const std::size_t middle = value.find(separator);
  const auto left = moneyFromText(value.substr(0, middle));
  const auto right = middle == value.npos ? std::nullopt : moneyFromText(value.substr(middle + 1));
  if (!left || !right) complain(fmt::format("{} takes two amounts, such as {}, and not \"{}\"", key, example, value));
  return {*left, *right};
}

LimitType limitFromText(std::string_view key, std::string_view value) {
  if (value != "no-limit" && value != "fixed-limit") {
    complain(fmt::format("{} is no-limit or fixed-limit, and not \"{}\"", key, value));
  }
  return value == "no-limit" ? LimitType::NoLimit : LimitType::FixedLimit;
}

std::string nameFromText(std::string_view what, std::string_view value, std::size_t most) {
  const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; };
  if (value.empty() || value.size() > most || std::any_of(value.begin(), value.end(), isControl)) {
    complain(fmt::format("{}'s name has 1 to {} bytes, and no control characters", what, most));
  }
  return std::string(value);
}

}  // namespace poker::holdem
