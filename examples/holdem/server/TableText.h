#pragma once

#include <examples/holdem/server/table/TableSettings.h>

#include <string>
#include <string_view>

namespace poker::holdem {

/// A table as it is written on the command line, for example "name=River,game=fixed-limit,blinds=1/2,seats=6":
///
///     name       at most kLongestTableName bytes
///     game       no-limit or fixed-limit
///     blinds     SMALL/BIG
///     seats      2 to kMaxSeats
///     buy-in     LEAST/MOST
///     password   empty for none
///
/// in any order, each once at most.
/// @param usual  has what is not written
/// @throws std::invalid_argument  says what is wrong with the text
TableSettings tableFromText(std::string_view text, const TableSettings& usual);

/// @throws std::invalid_argument  for settings that contradict each other
void checkTable(const TableSettings& table);

}  // namespace poker::holdem
