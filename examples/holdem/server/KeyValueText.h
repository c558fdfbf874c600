#pragma once

#include <CommandProcessor/types/GameType.h>
#include <CommandProcessor/types/RealMoneyType.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace poker::holdem {

// What the texts have in common that tell a table or a tournament on the command line: "name=River,blinds=1/2". Whatever is
// wrong in one is a std::invalid_argument that says so.

[[noreturn]] void complain(const std::string& what);

/// Calls `read(key, value)` for each KEY=VALUE; there are commas between them, so that none stands in a value.
/// @throws std::invalid_argument  a part is none, or a key stands there twice
void forEachKeyValue(std::string_view text,
                     const std::function<void(std::string_view key, std::string_view value)>& read);

/// The text for an error: with asterisks for its password, as far as the next KEY=VALUE.
std::string withoutPassword(std::string_view text);

/// A whole number in decimal digits.
std::uint64_t numberFromText(std::string_view key, std::string_view value, std::uint64_t least, std::uint64_t most);
/// Two amounts with the separator between them.
/// @param example  for who wrote it wrong: "1/2"
std::pair<RealMoneyType, RealMoneyType> amountsFromText(std::string_view key, std::string_view value, char separator,
                                                        std::string_view example);
/// "no-limit" or "fixed-limit".
LimitType limitFromText(std::string_view key, std::string_view value);
/// @param what  has the name: "a table"
/// @param most  bytes
std::string nameFromText(std::string_view what, std::string_view value, std::size_t most);

}  // namespace poker::holdem
