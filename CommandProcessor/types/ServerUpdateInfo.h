#pragma once

#include <CommandProcessor/types/ServerTableEntry.h>
#include <CommandProcessor/types/SteadyVector.h>

#include <vector>

namespace poker {

/// What changed in one list of tables since the version that the client holds.
///
///     count (16 bits) and the tables; count (16 bits) and the ids of removed tables (32 bits each); version (32 bits)
struct COMMANDPROCESSOR_API ServerUpdateInfo : DbRecord<ServerUpdateInfo> {
  SteadyVector<ServerTableEntry> tables;     ///< those that are new or changed
  std::vector<std::uint32_t> removedTables;  ///< game ids, in the order in which the tables went
  std::uint32_t version = 0;                 ///< of the list with these changes; the client's next request names it

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("tables", wire::list<std::uint16_t>(self.tables));
    field("removedTables", wire::list<std::uint16_t>(self.removedTables));
    field("version", self.version);
  }
};

}  // namespace poker
