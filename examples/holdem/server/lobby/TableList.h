#pragma once

#include <CommandProcessor/types/ServerUpdateInfo.h>
#include <examples/holdem/server/lobby/VersionNumbers.h>

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

namespace poker::holdem {

/// A list of tables that knows what has changed in it since any of its versions. It never holds more than the house's tables,
/// gone ones included, and those are few (poker::holdem::kMostTables), so that its counts always fit their 16 bits.
class TableList {
 public:
  /// @param numbers  where versions come from; must outlive this object
  explicit TableList(VersionNumbers& numbers) : numbers_(numbers), first_(numbers.forChange()), version_(first_) {}

  /// Adds the table, or replaces its line if something there is different; the line's version is set here.
  void set(const ServerTableEntry& line);
  /// Takes the table off the list, if it is there.
  void remove(std::uint32_t gameID);

  /// Null when the table is not on the list.
  const ServerTableEntry* find(std::uint32_t gameID) const;
  std::size_t size() const { return lines_.size(); }
  std::uint32_t version() const { return version_; }

  /// Tells somebody who has the list in that version what is different now; the whole list to who has none (0), and to who
  /// has one that is not from here.
  void changesSince(std::uint32_t version, ServerUpdateInfo& changes) const;

 private:
  VersionNumbers& numbers_;
  std::map<std::uint32_t, ServerTableEntry> lines_;
  std::vector<std::pair<std::uint32_t, std::uint32_t>> removed_;  // game ids and when they went, oldest first
  std::uint32_t first_;
  std::uint32_t version_;
};

}  // namespace poker::holdem
