#pragma once

#include <CommandProcessor/types/DbRecord.h>

#include <cstdint>

namespace poker {

/// A multi-table tournament in numbers.
///
///     registered, most players, players left, tables, paid places, re-buys, add-ons (32 bits each)
struct COMMANDPROCESSOR_API MultiTourneyInfo : DbRecord<MultiTourneyInfo> {
  std::uint32_t registeredPlayers = 0;
  std::uint32_t maxPlayers = 0;   ///< 0 for no limit
  std::uint32_t playersLeft = 0;  ///< those who are still in it
  std::uint32_t tables = 0;       ///< those that are still open
  std::uint32_t paidPlaces = 0;
  std::uint32_t rebuys = 0;  ///< made so far
  std::uint32_t addOns = 0;  ///< made so far

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("registeredPlayers", self.registeredPlayers);
    field("maxPlayers", self.maxPlayers);
    field("playersLeft", self.playersLeft);
    field("tables", self.tables);
    field("paidPlaces", self.paidPlaces);
    field("rebuys", self.rebuys);
    field("addOns", self.addOns);
  }
};

}  // namespace poker
