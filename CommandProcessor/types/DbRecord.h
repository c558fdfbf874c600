#pragma once

#include <CommandProcessor/platform/DbSerializableI.h>
#include <CommandProcessor/wire/Record.h>

namespace poker {

/// A Record whose text for a database column is its fields as a JSON object (FieldJson.h), so that the database can
/// look into it. All that travels is kept; what fitsOnWire() refuses cannot be read back.
///
/// The class's source emits the bodies once (DbRecordImpl.h):
///
///     template class Record<ServerTableEntry>;
///     template class DbRecord<ServerTableEntry>;
template <class T>
class COMMANDPROCESSOR_API DbRecord : public Record<T>, public DbSerializableI {
 public:
  std::string toDbText() const override;
  void fromDbText(std::string_view text) override;
};

}  // namespace poker
