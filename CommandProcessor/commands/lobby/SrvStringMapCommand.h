#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/wire/FlatMap.h>

#include <string>

namespace poker {

/// Texts by key; server and client agree on the keys.
class COMMANDPROCESSOR_API SrvStringMapCommand final : public Command<SrvStringMapCommand> {
 public:
  /// No pairs.
  void init();
  /// Sets the key's value, replacing an earlier one. Null counts as an empty text. More than 255 pairs cannot travel.
  /// @param value  not one that getValue() of the same object returned
  void addPair(const char* key, const char* value);

  /// Null when there is no such key. Lives until the pairs change.
  const char* getValue(const char* key) const;

 private:
  friend FieldAccess;
  SrvStringMapCommand() = default;
  static void fields(auto& self, auto&& field);

  FlatMap<std::string, std::string> pairs_;  // by the keys' bytes
};

}  // namespace poker
