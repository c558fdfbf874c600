#pragma once

#include <SQLiteCpp/SQLiteCpp.h>
#include <examples/holdem/server/bank/Bank.h>

#include <fmt/format.h>

#include <chrono>
#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace poker::holdem {

// What those need who keep something in the bank's database: Bank and the classes that use Bank::database().

inline std::int64_t sqlValue(RealMoneyType amount) { return amount.hundredths(); }
inline std::int64_t sqlValue(SeatID seat) { return seat.value(); }
inline std::int64_t sqlValue(AccountID account) { return static_cast<std::int64_t>(account); }
std::int64_t sqlValue(std::integral auto number) { return static_cast<std::int64_t>(number); }
inline std::int64_t sqlValue(std::chrono::sys_seconds time) { return time.time_since_epoch().count(); }
inline const std::string& sqlValue(const std::string& text) { return text; }

/// Bytes that are no text, and not empty. They come out again as Query::text() does.
struct SqlBytes {
  std::string_view bytes;
};

/// One use of a prepared statement, which is ready for the next one afterwards, also when this one failed.
class Query {
 public:
  template <class... Values>
  explicit Query(SQLite::Statement& statement, const Values&... values) : statement_(statement) {
    [[maybe_unused]] int position = 0;
    (bind(++position, values), ...);
  }
  ~Query() { statement_.tryReset(); }
  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;

  /// For what changes something.
  /// @return how many rows
  int run() { return statement_.exec(); }
  /// @return false when there are no more rows
  bool next() { return statement_.executeStep(); }

  bool isNull(int column) const { return statement_.isColumnNull(column); }
  // Of nothing (NULL): 0, and the empty text.
  std::int64_t number(int column) const { return statement_.getColumn(column).getInt64(); }
  RealMoneyType money(int column) const { return RealMoneyType::fromHundredths(number(column)); }
  AccountID account(int column) const { return AccountID{number(column)}; }
  std::chrono::sys_seconds time(int column) const {
    return std::chrono::sys_seconds(std::chrono::seconds(number(column)));
  }
  std::string text(int column) const { return statement_.getColumn(column).getString(); }

 private:
  void bind(int position, const auto& value) { statement_.bind(position, sqlValue(value)); }
  void bind(int position, const SqlBytes& value) {
    statement_.bind(position, value.bytes.data(), static_cast<int>(value.bytes.size()));
  }
  /// Nothing is NULL.
  template <class T>
  void bind(int position, const std::optional<T>& value) {
    if (value) {
      bind(position, *value);
    } else {
      statement_.bind(position);
    }
  }

  SQLite::Statement& statement_;
};

/// Calls `body`; an error of the database or of a password's hash becomes ours.
template <class Body>
auto guarded(const char* what, Body body) {
  const auto fail = [&](const std::exception& error) { return BankError(fmt::format("{}: {}", what, error.what())); };
  try {
    return body();
  } catch (const SQLite::Exception& error) {
    throw fail(error);
  } catch (const std::system_error& error) {
    throw fail(error);
  }
}

}  // namespace poker::holdem
