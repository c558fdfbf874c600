#pragma once

#include <CommandProcessor/wire/SerializeCommandBuf.h>
#include <hostkit/Encode.h>
#include <inspect/CommandFields.h>
#include <inspect/schema/Schema.h>
#include <tests/support/RandomFields.h>
#include <tests/support/WireBytes.h>

namespace poker::test {

/// Sets the fields of a command to random values.
/// @return false when some are held narrower than they travel: they are set as far as that
inline bool assignRandom(PokerCommandI& command, FieldVisitor& values) {
  try {
    CommandFields::of(command)->assign(command, values);
    return true;
  } catch (const FieldValueError&) {
    return false;
  }
}

/// A whole frame of a class, with random values.
inline Bytes randomFrame(const CommandSchema& schema, FieldVisitor& values) {
  PokerCommandI& command = CommandFields::of(schema.name())->create();
  assignRandom(command, values);
  SerializeCommandBuf buffer(64);
  const auto frame = encodeCommand(command, buffer);
  Bytes bytes(frame.begin(), frame.end());
  command.release();
  return bytes;
}
inline Bytes randomFrame(const CommandSchema& schema, std::uint64_t seed) {
  RandomFields values(seed);
  return randomFrame(schema, values);
}

inline Bytes joined(std::span<const Bytes> frames) {
  Bytes bytes;
  for (const Bytes& frame : frames) bytes.insert(bytes.end(), frame.begin(), frame.end());
  return bytes;
}

}  // namespace poker::test
