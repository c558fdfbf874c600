#pragma once

#include <CommandProcessor/types/ServerUpdateInfo.h>
#include <examples/holdem/server/lobby/VersionNumbers.h>
#include <examples/holdem/server/lobby/VersionedMap.h>

#include <cstddef>
#include <cstdint>

namespace poker::holdem {

/// A list of tables that knows what has changed in it since any of its versions. It never holds more than the house's tables,
/// gone ones included, and those are few (poker::holdem::kMostTables), so that its counts always fit their 16 bits.
class TableList {
 public:
  /// @param numbers  where versions come from; must outlive this object
  explicit TableList(VersionNumbers& numbers) : numbers_(numbers), lines_([&numbers] { return numbers.forChange(); }) {}

  /// Adds the table, or replaces its line if something there is different; the line's version is set here.
  void set(const ServerTableEntry& line);
  /// Takes the table off the list, if it is there.
  void remove(std::uint32_t gameID) { lines_.remove(gameID); }

  /// Null when the table is not on the list.
  const ServerTableEntry* find(std::uint32_t gameID) const { return lines_.find(gameID); }
  std::size_t size() const { return lines_.size(); }
  std::uint32_t version() const { return lines_.version(); }

  /// Tells somebody who has the list in that version what is different now; the whole list to who has none (0), and to who
  /// has one that is not from here.
  void changesSince(std::uint32_t version, ServerUpdateInfo& changes) const;

 private:
  VersionNumbers& numbers_;
  VersionedMap<std::uint32_t, ServerTableEntry> lines_;
};

}  // namespace poker::holdem
