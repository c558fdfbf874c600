#pragma once

// Bytes and records: what the tests of wire formats share.

#include <CommandProcessor/wire/CommandDeserializeException.h>
#include <CommandProcessor/wire/DeserializeCommandBuf.h>
#include <CommandProcessor/wire/SerializeCommandBuf.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace poker::test {

using Bytes = std::vector<std::uint8_t>;

/// "0A 00 ff" as bytes; blanks are ignored.
inline Bytes hex(std::string_view digits) {
  Bytes bytes;
  int half = -1;
  for (const char c : digits) {
    if (c == ' ') continue;
    const int value = c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10;
    if (half >= 0) bytes.push_back(static_cast<std::uint8_t>(half << 4 | value));
    half = half >= 0 ? -1 : value;
  }
  return bytes;
}

inline std::string toHex(const Bytes& bytes) {
  std::string digits;
  for (const std::uint8_t byte : bytes) {
    if (!digits.empty()) digits += ' ';
    digits += "0123456789ABCDEF"[byte >> 4];
    digits += "0123456789ABCDEF"[byte & 0xF];
  }
  return digits;
}

/// What was written behind the length slot.
inline Bytes written(const SerializeCommandBuf& buf) { return {buf.data() + 4, buf.data() + buf.used()}; }

template <class T>
Bytes encode(const T& record) {
  SerializeCommandBuf buf(64);
  record.serialize(buf);
  return written(buf);
}

/// A command's fields without its frame.
template <class T>
Bytes bodyOf(const T& command) {
  const Bytes bytes = encode(command);
  return {bytes.begin() + 2, bytes.end()};
}

/// Runs what reads, and returns the message that it threw; "" when it did not.
template <class Read>
std::string messageOf(Read&& read) {
  try {
    read();
  } catch (CommandDeserializeException* thrown) {
    return std::unique_ptr<CommandDeserializeException>(thrown)->message();
  }
  return "";
}

/// Reads a record from bytes that it must use up.
/// @return  the message that was thrown, "" when all is well
template <class T>
std::string decode(T& record, const Bytes& bytes) {
  DeserializeCommandBuf in(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  const std::string message = messageOf([&] { record.deserialize(in); });
  return message.empty() && in.remaining() != 0 ? "bytes are left" : message;
}

constexpr auto kNumberFails = "CommandBuf::readNumber - bufSize == 0";
constexpr auto kLengthFails = "CommandBuf::getFieldLen - bufSize == 0";
constexpr auto kStringFails = "CommandBuf::readString - bufSize == 0";
constexpr auto kTextFails = "CommandBuf::readString - bufSize == 0 or readed string longer that storage";

inline bool isReadMessage(std::string_view message) {
  return message == kNumberFails || message == kLengthFails || message == kStringFails || message == kTextFails;
}

/// The most memory that reading a frame may need at once.
constexpr std::size_t decodeBudget(std::size_t frame) { return 40 * frame + 32 * 1024; }

}  // namespace poker::test
