#pragma once

#include <CommandProcessor/types/DbRecord.h>
#include <CommandProcessor/wire/FlatMap.h>

#include <cstdint>
#include <string>

namespace poker {

/// Which line about a prize fund is meant. Travels as one byte; values without a name are carried as they are.
enum class PrizeFundText : std::uint8_t {
  Total = 0,
  BuyIns = 1,
  Rebuys = 2,
  AddOns = 3,
  Guaranteed = 4,  ///< what the house pays at least
  Added = 5,       ///< what the house pays on top
};

/// What a multi-table tournament's prize fund is made of, as the lobby shows it.
///
///     count (16 bits), then key (byte) and text (string) in key order; summary (string)
struct COMMANDPROCESSOR_API PrizeFundInfo : DbRecord<PrizeFundInfo> {
  FlatMap<PrizeFundText, std::string> texts;  ///< amounts: "$1,250.50"
  std::string summary;                        ///< the fund in one line

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("texts", wire::map<std::uint16_t>(self.texts));
    field("summary", self.summary);
  }
};

}  // namespace poker
