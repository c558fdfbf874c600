#pragma once

#include <CommandProcessor/platform/Export.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace poker {

/// What a field is on the wire.
enum class FieldType : std::uint8_t {
  Byte,      ///< 1 byte
  Bool,      ///< 1 byte; inside a flags byte, the bits of Field::mask
  U16,       ///< 2 bytes
  I16,       ///< 2 bytes, signed
  U32,       ///< 4 bytes
  I32,       ///< 4 bytes, signed
  U64,       ///< 8 bytes
  I64,       ///< 8 bytes, signed
  Double,    ///< 8 bytes, IEEE-754
  Money,     ///< 8 bytes, signed count of hundredths
  DateTime,  ///< 8 bytes, days since 1899-12-30 as a double
  String,    ///< the characters and a NUL
  Bytes,     ///< raw bytes
  Zeros,     ///< bytes of zero that carry nothing
  List,      ///< elements, behind their count
  Map,       ///< pairs of key and value in key order, behind their count
  Record,    ///< fields of its own
};

/// Describes one field, or one element of a list (which has no name).
struct Field {
  std::string_view name;
  FieldType type = FieldType::Byte;
  /// Record: what it is called ("TourMoneyChooser", "flags", "date-time-status").
  std::string_view typeName = {};
  /// Bytes of fixed size, Zeros, and a Record whose parts share their bytes (a flags byte): how many bytes it takes.
  /// String: the most characters it may have. 0: not bounded.
  std::uint32_t size = 0;
  /// Bytes, List, Map: the number that stands in front. None when the size is fixed or the count stands elsewhere.
  std::optional<FieldType> count = {};
  /// The count is signed, and below 1 nothing follows; any other signed count below 0 is one that is too large.
  bool belowOneIsNone = false;
  /// List: a count above this one is refused. 0: no such limit.
  std::uint32_t most = 0;
  /// List without a count in front: the name of the derived number before it that is its count.
  std::string_view countedBy = {};
  /// Bool inside a flags byte: the bits that are written for true, of which any is read as true. 0: a byte of its own.
  std::uint8_t mask = 0;
  /// Computed from other fields (a count, a presence flag): shown, never set.
  bool derived = false;
  /// A password, a PIN, bytes of the secure channel: not for logs.
  bool secret = false;
};

/// Walks the fields of a command or record by name, in wire order.
///
/// One interface reads, sets and describes. Values are handed over as references: what is written into them counts when
/// the walk is one that sets (assign...), and is dropped when it is one that only looks (visit...). A value that
/// does not fit the field's type ends the walk with FieldValueError.
class COMMANDPROCESSOR_API FieldVisitor {
 public:
  virtual ~FieldVisitor();

  /// Byte, Bool, the 16, 32 and 64-bit numbers (U64 as the same 64 bits, signed) and Money.
  virtual void number(const Field& field, std::int64_t& value) = 0;
  /// Double and DateTime.
  virtual void real(const Field& field, double& value) = 0;
  virtual void text(const Field& field, std::string& value) = 0;
  virtual void bytes(const Field& field, std::vector<std::uint8_t>& value) = 0;
  virtual void zeros(const Field& field);

  virtual void beginRecord(const Field& field) = 0;
  virtual void endRecord(const Field& field) = 0;

  /// @param size  elements held
  /// @return      elements to visit. An assigning walk makes the list that long; a looking one shows empty elements
  ///              beyond those held, so that a describing visitor returns 1 to see what an element is.
  virtual std::size_t beginList(const Field& field, std::size_t size) = 0;
  virtual void endList(const Field& field) = 0;

  /// As beginList. Each entry is beginEntry(), a field "key", a field "value", endEntry(). An assigning walk starts
  /// from an empty map.
  virtual std::size_t beginMap(const Field& field, std::size_t size) = 0;
  virtual void beginEntry();
  virtual void endEntry();
  virtual void endMap(const Field& field) = 0;

  /// Brackets the fields that travel only when a condition holds. They are visited in either case.
  /// @param when     the condition, in words
  /// @param present  whether it holds now
  virtual void beginPart(std::string_view when, bool present);
  virtual void endPart();
};

/// An assigning visitor handed over a value that its field cannot carry.
class COMMANDPROCESSOR_API FieldValueError : public std::out_of_range {
 public:
  FieldValueError(const Field& field, const std::string& problem);
  FieldValueError(const FieldValueError&) = default;
  FieldValueError& operator=(const FieldValueError&) = default;
  ~FieldValueError() override;

  /// what() without the field's name.
  std::string_view problem() const noexcept { return std::string_view(what()).substr(problem_); }

 private:
  std::size_t problem_;
};

/// @throws FieldValueError  when the value is not within the bounds
COMMANDPROCESSOR_API void checkFieldRange(const Field& field, std::int64_t value, std::int64_t least,
                                          std::int64_t most);

/// The field type's name: "byte", "u16", "date-time", "list", …; of a Record, what it is called.
COMMANDPROCESSOR_API std::string_view fieldTypeName(const Field& field);
COMMANDPROCESSOR_API std::string_view fieldTypeName(FieldType type);

}  // namespace poker
