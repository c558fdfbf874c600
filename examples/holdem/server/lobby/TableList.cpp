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
  const auto [place, isNew] = lines_.try_emplace(line.gameID, line);
  if (isNew) {
    std::erase_if(removed_, [&](const auto& gone) { return gone.first == line.gameID; });
  } else if (varying(place->second) == varying(line)) {
    return;
  } else {
    place->second = line;
  }
  place->second.version = version_ = numbers_.forChange();
}

void TableList::remove(std::uint32_t gameID) {
  if (lines_.erase(gameID) == 0) return;
  version_ = numbers_.forChange();
  removed_.emplace_back(gameID, version_);
}

const ServerTableEntry* TableList::find(std::uint32_t gameID) const {
  const auto place = lines_.find(gameID);
  return place == lines_.end() ? nullptr : &place->second;
}

void TableList::changesSince(std::uint32_t version, ServerUpdateInfo& changes) const {
  const bool isKnown = version >= first_ && version <= version_;
  changes.tables.clear();
  changes.removedTables.clear();
  changes.version = version_;
  for (const auto& [gameID, line] : lines_) {
    if (!isKnown || line.version > version) changes.tables.push_back(line);
  }
  for (const auto& [gameID, gone] : removed_) {
    if (isKnown && gone > version) changes.removedTables.push_back(gameID);
  }
  numbers_.tell();
}

}  // namespace poker::holdem
