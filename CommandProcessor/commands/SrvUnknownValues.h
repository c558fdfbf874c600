#pragma once

#include <CommandProcessor/core/BaseCommand.h>
#include <CommandProcessor/wire/String2String.h>

namespace poker {

/// Texts by key, under whatever type code its creator chooses; client and server agree on codes and keys. Can be sent
/// as it is, and is the base of SrvCashierStatus.
class COMMANDPROCESSOR_API SrvUnknownValues : public BaseCommand<SrvUnknownValues> {
 public:
  explicit SrvUnknownValues(CommandType type) : BaseCommand(type) {}

  /// Without values.
  void init();
  /// Sets each key of `data` to its value; values of other keys stay. More than 255 keys cannot travel.
  void addData(const String2String& data);

  /// An empty text when there is no such key; never null. A null key is an empty one. Lives until the values change.
  const char* value(const char* key) const;
  const String2String& impl() const { return values_; }

 protected:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) { field("values", self.values_); }

  String2String values_;
};

}  // namespace poker
