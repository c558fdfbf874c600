#pragma once

#include <CommandProcessor/types/DbRecord.h>

#include <cstdint>
#include <string>

namespace poker {

/// Somebody who plays in a tournament, as the lobby shows it.
///
///     name (string); id (32 bits); city (string)
struct COMMANDPROCESSOR_API TourPlayerEntry : DbRecord<TourPlayerEntry> {
  std::string name;  ///< the screen name
  std::uint32_t playerID = 0;
  std::string city;

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("name", self.name);
    field("playerID", self.playerID);
    field("city", self.city);
  }
};

}  // namespace poker
