#include <examples/holdem/server/lobby/TableList.h>

#include <tuple>

namespace poker::holdem {

namespace {

/// All that may change in a table's line; what the table is stays as it is.
auto varying(const ServerTableEntry& line) {
  return std::tie(line.handNumber, line.players, line.waitListLength, line.observers, line.averagePot,
                  line.playersPerFlop, line.handsPerHour, line.flags);
}

}  // namespace

void TableList::set(const ServerTableEntry& line) {
  const auto saysSame = [](const ServerTableEntry& a, const ServerTableEntry& b) { return varying(a) == varying(b); };
  if (ServerTableEntry* changed = lines_.set(line.gameID, line, saysSame)) changed->version = lines_.version();
}

void TableList::changesSince(std::uint32_t version, ServerUpdateInfo& changes) const {
  changes.tables.clear();
  changes.removedTables.clear();
  changes.version = lines_.version();
  lines_.forEachChanged(version, [&](std::uint32_t, const ServerTableEntry& line) { changes.tables.push_back(line); });
  lines_.forEachRemoved(version, [&](std::uint32_t gameID) { changes.removedTables.push_back(gameID); });
  numbers_.tell();
}

}  // namespace poker::holdem
