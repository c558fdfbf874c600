#pragma once

#include <CommandProcessor/wire/FlatMap.h>
#include <CommandProcessor/wire/Record.h>

#include <string>

namespace poker {

/// A map from text to text, ordered byte by byte, with the operations of FlatMap.
///
///     count (byte), then for each entry in key order: key (string), value (string)
///
/// The count is one byte and all entries follow it, so a map of more than 255 entries cannot be read back (fitsOnWire()
/// tells). A key that comes twice keeps its last value.
class COMMANDPROCESSOR_API String2String : public FlatMap<std::string, std::string>, public Record<String2String> {
 public:
  using FlatMap::FlatMap;

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) { field("entries", wire::map<std::uint8_t>(self)); }
};

}  // namespace poker
