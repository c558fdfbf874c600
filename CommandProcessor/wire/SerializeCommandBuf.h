#pragma once

#include <CommandProcessor/platform/Export.h>
#include <CommandProcessor/wire/WireNumber.h>

#include <memory>
#include <string>
#include <string_view>

namespace poker {

class COleDateTime;

/// The buffer that a command writes itself into.
///
///     finished buffer = total length (32 bits, this slot included), bytes ...
///     number          = its 1, 2, 4 or 8 little-endian bytes          bool   = 1 byte, 0 or 1
///     double          = 8 bytes, IEEE-754, little-endian              string = characters, one NUL byte
///
/// Nothing stands between fields: no tags, no lengths, no padding. The buffer grows by its initial size plus what was
/// asked for, never by doubling, so that it stays close to the size of its command. Writing fails only when memory runs
/// out (std::bad_alloc); nothing is written then. Not locked: one thread at a time.
class COMMANDPROCESSOR_API SerializeCommandBuf {
 public:
  struct COMMANDPROCESSOR_API ArrayDeleter {
    void operator()(std::uint8_t* bytes) const noexcept;
  };
  /// A heap array that attach() takes and detach() hands out.
  using Array = std::unique_ptr<std::uint8_t[], ArrayDeleter>;
  /// @throws std::bad_alloc
  static Array allocate(std::uint32_t size);

  /// @param initialSize  bytes to start with, and the step by which the buffer grows
  explicit SerializeCommandBuf(std::uint32_t initialSize);
  SerializeCommandBuf(const SerializeCommandBuf&) = delete;
  SerializeCommandBuf& operator=(const SerializeCommandBuf&) = delete;
  ~SerializeCommandBuf();

  /// Starts over: clears the mark and leaves only the four zero bytes where finish() will put the total length.
  void reset();

  /// Appends `count` bytes; every write goes through here.
  void append(const void* bytes, std::uint32_t count) {
    if (count == 0) return;
    std::memcpy(claim(count), bytes, count);
  }
  /// A template, so that no pointer or enumeration turns into a bool unseen.
  template <std::same_as<bool> B>
  void write(B value) {
    *claim(1) = value ? 1 : 0;
  }
  template <WireNumber T>
  void write(T value) {
    wire::storeLittleEndian(claim(sizeof(T)), value);
  }
  /// Writes the characters up to the first NUL, and one NUL.
  void write(std::string_view text);
  /// As above; a null pointer is written as one blank and a NUL, so that it reads back as " " and not as "".
  void write(const char* text);

  /// The day count alone; the status is not sent.
  void write(const COleDateTime& value);
  template <WireEnum T>
  void write(T value) {
    write(static_cast<std::underlying_type_t<T>>(value));
  }

  /// Writes one value and returns the buffer, so that fields can be written as a chain. A value class (money, a record)
  /// writes itself.
  template <class T>
  SerializeCommandBuf& operator<<(const T& value) {
    if constexpr (requires { value.serialize(*this); }) {
      value.serialize(*this);
    } else {
      write(value);
    }
    return *this;
  }

  /// Copies `count` bytes over already written ones at `offset`; does nothing when they would reach beyond used().
  void overwrite(const void* bytes, std::uint32_t count, std::uint32_t offset);

  /// Puts the number of bytes written into the length slot and into `size`, and returns the bytes; the buffer keeps
  /// them.
  const std::uint8_t* finish(std::uint32_t& size);

  /// Frees the present array and writes into the given one from its start; no length slot is written.
  void attach(Array array, std::uint32_t capacity);

  /// Hands out the array and starts a fresh, empty one (without a length slot; see reset()).
  /// @param size  receives the array's capacity, not the bytes written: those come from finish()
  Array detach(std::uint32_t& size);

  const std::uint8_t* data() const { return data_.get(); }
  std::uint32_t used() const { return used_; }
  std::uint32_t capacity() const { return capacity_; }

  /// A hint for the transport that this buffer holds private data (a logon, an account, a cashier's answer). The
  /// commands that carry such data set it when they write themselves; nothing in this library reads it.
  bool mark() const { return mark_; }
  void setMark(bool mark = true) { mark_ = mark; }

 private:
  std::uint8_t* claim(std::uint32_t count) {
    if (count > capacity_ - used_) [[unlikely]]
      grow(count);
    std::uint8_t* place = data_.get() + used_;
    used_ += count;
    return place;
  }
  void grow(std::uint32_t count);

  Array data_;
  std::uint32_t capacity_;
  std::uint32_t used_ = 0;
  std::uint32_t increment_;
  bool mark_ = false;
};

}  // namespace poker
