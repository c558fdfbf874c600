#pragma once

#include <CommandProcessor/wire/StringVector.h>

namespace poker {

/// Texts in order, not more than a million of them.
///
///     count (32 bits), then the strings
///
/// Reading rejects a larger count before it looks at anything else, with a message of its own.
class COMMANDPROCESSOR_API StringList : public Strings, public Record<StringList> {
 public:
  static constexpr std::uint32_t kMostElements = 1000000;
  static constexpr const char* kTooManyElements = "StringList::deserialize more then 1000000";

  StringList() = default;
  StringList(std::initializer_list<std::string> items) : Strings(items) {}

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) { field("items", wire::list<wire::Capped<StringList>>(self.items_)); }
};

}  // namespace poker
