#pragma once

#include <CommandProcessor/platform/Export.h>
#include <CommandProcessor/wire/WireNumber.h>

#include <string>

namespace poker {

class COleDateTime;

/// Reads the fields of one command from received bytes, which it does not own and which must outlive it.
///
/// Every read either succeeds and moves on, or throws a CommandDeserializeException* and moves nothing; what was being
/// filled is then half filled and must be discarded. Not locked: one thread at a time.
class COMMANDPROCESSOR_API DeserializeCommandBuf {
 public:
  DeserializeCommandBuf(const void* bytes, std::uint32_t size)
      : data_(static_cast<const std::uint8_t*>(bytes)), remaining_(size) {}

  /// Copies `width` bytes as they stand.
  /// @throws CommandDeserializeException*  "CommandBuf::readNumber - bufSize == 0"
  void readNumber(void* destination, std::uint32_t width) {
    if (width == 0) return;
    std::memcpy(destination, take(width), width);
  }
  /// Makes sure that `width` bytes are left; moves nothing. To be asked before memory is set aside for a size that came
  /// from the wire. Fails as readNumber does.
  void require(std::uint32_t width) const {
    if (remaining_ < width) [[unlikely]]
      failNumber();
  }
  /// Passes over `width` bytes without looking at them; fails as readNumber does.
  void skip(std::uint32_t width) { take(width); }

  template <WireNumber T>
  void read(T& value) {
    value = wire::loadLittleEndian<T>(take(sizeof(T)));
  }
  /// Any byte but 0 is true.
  void read(bool& value) { value = *take(1) != 0; }
  void read(std::string& text) { readString(text); }

  /// The length of the string that begins here; moves nothing.
  /// @throws CommandDeserializeException*  "CommandBuf::getFieldLen - bufSize == 0" when no NUL is left
  std::uint32_t getFieldLen() const;

  /// @throws CommandDeserializeException*  "CommandBuf::readString - bufSize == 0" with nothing left; as getFieldLen()
  void readString(std::string& text);

  /// Reads into an array of `capacity` characters, the terminating NUL included; never cuts.
  /// @throws CommandDeserializeException*  "CommandBuf::readString - bufSize == 0 or readed string longer that storage"
  ///         with nothing left or when the string does not fit; as getFieldLen()
  void readString(char* storage, std::uint32_t capacity);

  /// The day count; the status becomes valid.
  void read(COleDateTime& value);
  template <WireEnum T>
  void read(T& value) {
    std::underlying_type_t<T> number;
    read(number);
    value = static_cast<T>(number);
  }
  template <std::uint32_t N>
  void read(char (&storage)[N]) {
    readString(storage, N);
  }

  /// Reads one value and returns the buffer, so that fields can be read as a chain. A value class (money, a record) reads
  /// itself.
  template <class T>
  DeserializeCommandBuf& operator>>(T& value) {
    if constexpr (requires { value.deserialize(*this); }) {
      value.deserialize(*this);
    } else {
      read(value);
    }
    return *this;
  }

  std::uint32_t position() const { return position_; }
  std::uint32_t remaining() const { return remaining_; }

 private:
  const std::uint8_t* take(std::uint32_t width) {
    require(width);
    const std::uint8_t* place = data_ + position_;
    position_ += width;
    remaining_ -= width;
    return place;
  }
  [[noreturn]] static void failNumber();

  const std::uint8_t* data_;
  std::uint32_t position_ = 0;
  std::uint32_t remaining_;
};

}  // namespace poker
