#pragma once

#include <inspect/schema/Schema.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace poker {

/// Bytes of a command that belong together: a value, or the count in front of a list, a map or raw bytes.
struct WirePiece {
  const SchemaField* field;
  std::string_view path;                ///< "prizes[2].key"; valid during the call
  std::size_t offset;                   ///< counted from the command's type code byte
  std::span<const std::uint8_t> bytes;  ///< as they travel, a string's NUL included; may be empty for raw bytes
  bool isCount;                         ///< the number in front of the field's elements or bytes, of type *field->count

  /// The type of the number here: the count's or the field's.
  FieldType type() const { return isCount ? *field->count : field->type; }
  /// Of a number, bool or money: its value, sign-extended; a packed record's byte.
  std::int64_t number() const;
  /// Of a double or date-time: its 64 bits.
  std::uint64_t bits() const;
  /// Of a string: the characters without the NUL.
  std::string_view text() const;
};

/// Where a command cannot be read on.
struct WireFailure {
  std::string path;          ///< of the field that cannot be read; empty for bytes behind the last field
  const SchemaField* field;  ///< null for bytes behind the last field
  std::size_t offset;        ///< of its first byte, counted from the type code byte
  std::size_t remaining;     ///< bytes from there to the end
  std::string problem;       ///< "takes 4 bytes, 3 are left"
};

/// Reads the fields of a command by its schema alone, piece by piece, without its class: for whoever wants to know where
/// each byte belongs. It fails exactly where the class fails.
/// @param command  a frame without its length slot: type code, family, fields
/// @param piece    called for each piece in the order of the bytes
/// @return why not all bytes are read; none when they are
std::optional<WireFailure> walkCommand(const CommandSchema& schema, std::span<const std::uint8_t> command,
                                       const std::function<void(const WirePiece&)>& piece);

}  // namespace poker
