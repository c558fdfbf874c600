#pragma once

#include <CommandProcessor/core/Catalogue.h>
#include <CommandProcessor/wire/FieldVisitor.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace poker {

/// What a field's presence hangs on: the value of an earlier field, in the same record or in one around it.
struct FieldCondition {
  enum class Test : std::uint8_t {
    IsTrue,   ///< "empty is true"
    IsFalse,  ///< "empty is false"
    Has,      ///< "mask has 0x100": any of the bits is set
  };

  std::string field;
  Test test = Test::IsTrue;
  std::uint64_t bits = 0;  ///< of Has

  bool holds(std::uint64_t value) const {
    return test == Test::Has ? (value & bits) != 0 : (value != 0) == (test == Test::IsTrue);
  }
};

/// One field of a command or record as data: all that somebody needs to know to read it without the class.
struct SchemaField {
  std::string name;  ///< empty for the element of a list
  FieldType type = FieldType::Byte;
  std::string typeName;  ///< of a Record; "card", "flags" and "date-time-status" are records that the format knows
  std::uint32_t size = 0;
  std::optional<FieldType> count;
  bool belowOneIsNone = false;
  std::uint32_t most = 0;
  std::string countedBy;
  std::uint8_t mask = 0;
  bool derived = false;
  bool secret = false;
  std::string when;                        ///< the condition in words; empty: the field always travels
  std::vector<FieldCondition> conditions;  ///< the same for programs: all must hold
  /// Record: its fields in wire order. List: its one element. Map: "key" and "value". Empty for everything else.
  std::vector<SchemaField> fields;

  /// Its fields share their bytes and are values of it, not fields on the wire: a card, a flags byte.
  bool isPacked() const { return isCard() || isFlags(); }
  bool isCard() const { return type == FieldType::Record && typeName == "card"; }
  bool isFlags() const { return type == FieldType::Record && typeName == "flags"; }
  bool isDateTimeStatus() const { return type == FieldType::Record && typeName == "date-time-status"; }
};

/// All fields of a command class behind the two bytes of its frame, in wire order.
struct CommandSchema {
  const CommandDescription* description;
  std::vector<SchemaField> fields;

  std::string_view name() const { return description->name; }
  /// Whether a password, a PIN or the like is among the fields, at any depth.
  bool hasSecrets() const;

  /// The schemas of all classes, in the order of the catalogue; made at the first call, and kept as long as the process.
  /// Any thread may call this and the look-ups below.
  static std::span<const CommandSchema> all();
  /// By the exact name; null when there is none.
  static const CommandSchema* find(std::string_view name);
};

/// The bytes of a number, bool, double, money or date-time on the wire; 0 for every other type.
std::uint32_t widthOf(FieldType type);
/// Whether a number of the type has a sign.
bool isSigned(FieldType type);

}  // namespace poker
