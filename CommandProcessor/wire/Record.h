#pragma once

#include <CommandProcessor/platform/Export.h>
#include <CommandProcessor/wire/FieldWords.h>

namespace poker {

class DeserializeCommandBuf;
class FieldVisitor;
class SerializeCommandBuf;

/// What every value class with a field list shares. The class is default-constructible, names FieldAccess as its friend
/// and defines `static void fields(auto& self, auto&& field)` in its header, so that commands and other records can
/// hold it; its source emits the bodies once: `template class Record<TourMoneyChooser>;` (RecordImpl.h).
template <class T>
class COMMANDPROCESSOR_API Record {
 public:
  void serialize(SerializeCommandBuf& buf) const;
  /// Nothing of the record's earlier value stays.
  /// @throws CommandDeserializeException*  when the bytes run out; the record is then half filled
  void deserialize(DeserializeCommandBuf& buf);

  /// Shows the fields to the visitor, by name and in wire order.
  void visitFields(FieldVisitor& visitor) const;
  /// Lets the visitor set the fields.
  /// @throws FieldValueError  when a value does not fit; the fields before it are set
  void assignFields(FieldVisitor& visitor);
  /// Whether the receiver can read back all that is held.
  bool fitsOnWire() const;
};

}  // namespace poker
