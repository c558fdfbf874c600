#pragma once

#include <CommandProcessor/wire/FlatMap.h>
#include <CommandProcessor/wire/Record.h>

#include <string>

namespace poker {

/// A map from number to text, in ascending order of the signed numbers, with the operations of FlatMap.
///
///     count (byte), then for each entry in key order: key (32 bits), value (string)
///
/// The count is one byte and all entries follow it, so a map of more than 255 entries cannot be read back (fitsOnWire()
/// tells). A key that comes twice keeps its last value.
class COMMANDPROCESSOR_API Int2StringSer : public FlatMap<std::int32_t, std::string>, public Record<Int2StringSer> {
 public:
  using FlatMap::FlatMap;

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) { field("entries", wire::map<std::uint8_t>(self)); }
};

}  // namespace poker
