#pragma once

#include <CommandProcessor/types/DbRecord.h>
#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/types/SteadyVector.h>
#include <CommandProcessor/wire/FlatSet.h>

#include <cstdint>
#include <string>

namespace poker {

/// One table of a multi-table tournament.
///
///     id, players (32 bits); smallest, largest stack (money); name (string)
struct COMMANDPROCESSOR_API MultiTourTableEntry : DbRecord<MultiTourTableEntry> {
  std::uint32_t tableID = 0;
  std::uint32_t players = 0;
  RealMoneyType smallestStack;
  RealMoneyType largestStack;
  std::string name;

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("tableID", self.tableID);
    field("players", self.players);
    field("smallestStack", self.smallestStack);
    field("largestStack", self.largestStack);
    field("name", self.name);
  }
};

/// The tables of a multi-table tournament: all of them, or what changed since the version that the client holds.
///
///     count of tables, count of removed tables (32 bits); the tables; ids of removed tables (32 bits each, ascending);
///     version (32 bits)
struct COMMANDPROCESSOR_API MultiTourTablesInfo : DbRecord<MultiTourTablesInfo> {
  SteadyVector<MultiTourTableEntry> tables;  ///< those that are new or changed
  FlatSet<std::uint32_t> removedTables;      ///< ids
  std::uint32_t version = 0;                 ///< the client's next request names it

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    auto tables = wire::counted<std::uint32_t>(self.tables);
    auto removedTables = wire::counted<std::uint32_t>(self.removedTables);
    field("tableCount", tables.count());
    field("removedTableCount", removedTables.count());
    field("tables", tables);
    field("removedTables", removedTables);
    field("version", self.version);
  }
};

}  // namespace poker
