#pragma once

#include <CommandProcessor/types/DbRecord.h>
#include <CommandProcessor/wire/FlatMap.h>

#include <cstdint>
#include <string>

namespace poker {

/// Which text of a multi-table tournament is meant. Travels as one byte; values without a name are carried as they are.
enum class MultiTourText : std::uint8_t {
  Title = 0,
  Description = 1,
  Rules = 2,
  Blinds = 3,  ///< the levels, a line each
  News = 4,    ///< what the host has to say now
};

/// The texts that the lobby shows about a multi-table tournament: all of them, or those that changed.
///
///     count (16 bits), then key (byte) and text (string) in key order; version (32 bits)
struct COMMANDPROCESSOR_API MultiTourTextInfo : DbRecord<MultiTourTextInfo> {
  FlatMap<MultiTourText, std::string> texts;
  std::uint32_t version = 0;  ///< the client's next request names it

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("texts", wire::map<std::uint16_t>(self.texts));
    field("version", self.version);
  }
};

}  // namespace poker
