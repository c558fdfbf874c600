#include <CommandProcessor/platform/COleDateTime.h>
#include <CommandProcessor/wire/SerializeCommandBuf.h>

#include <cstdlib>
#include <limits>
#include <new>
#include <utility>

namespace poker {

namespace {
constexpr std::uint32_t kLengthSlot = sizeof(std::uint32_t);
}

void SerializeCommandBuf::ArrayDeleter::operator()(std::uint8_t* bytes) const noexcept { std::free(bytes); }

SerializeCommandBuf::Array SerializeCommandBuf::allocate(std::uint32_t size) {
  // An empty array is a pointer of its own too: zero bytes from malloc may be no pointer at all.
  auto* bytes = static_cast<std::uint8_t*>(std::malloc(size == 0 ? 1 : size));
  if (bytes == nullptr) throw std::bad_alloc();
  return Array(bytes);
}

SerializeCommandBuf::SerializeCommandBuf(std::uint32_t initialSize)
    : data_(allocate(initialSize)), capacity_(initialSize), increment_(initialSize) {
  reset();
}

SerializeCommandBuf::~SerializeCommandBuf() = default;

void SerializeCommandBuf::reset() {
  mark_ = false;
  used_ = 0;
  write(std::uint32_t{0});
}

void SerializeCommandBuf::write(std::string_view text) {
  if (const auto nul = text.find('\0'); nul != std::string_view::npos) text = text.substr(0, nul);
  if (text.size() >= std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
  const auto length = static_cast<std::uint32_t>(text.size());
  std::uint8_t* place = claim(length + 1);
  if (length != 0) std::memcpy(place, text.data(), length);
  place[length] = 0;
}

void SerializeCommandBuf::write(const char* text) { write(std::string_view(text != nullptr ? text : " ")); }

void SerializeCommandBuf::write(const COleDateTime& value) { write(value.bits()); }

void SerializeCommandBuf::overwrite(const void* bytes, std::uint32_t count, std::uint32_t offset) {
  if (count == 0 || offset > used_ || count > used_ - offset) return;
  std::memcpy(data_.get() + offset, bytes, count);
}

const std::uint8_t* SerializeCommandBuf::finish(std::uint32_t& size) {
  std::uint8_t length[kLengthSlot];
  wire::storeLittleEndian(length, used_);
  overwrite(length, kLengthSlot, 0);
  size = used_;
  return data_.get();
}

void SerializeCommandBuf::attach(Array array, std::uint32_t capacity) {
  data_ = std::move(array);
  capacity_ = capacity;
  used_ = 0;
}

SerializeCommandBuf::Array SerializeCommandBuf::detach(std::uint32_t& size) {
  Array fresh = allocate(increment_);
  size = capacity_;
  capacity_ = increment_;
  used_ = 0;
  return std::exchange(data_, std::move(fresh));
}

void SerializeCommandBuf::grow(std::uint32_t count) {
  const std::uint64_t capacity = std::uint64_t{capacity_} + increment_ + count;
  if (capacity > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
  // realloc may extend in place; the size is the same as that of a new array with a copy.
  auto* grown = static_cast<std::uint8_t*>(std::realloc(data_.get(), static_cast<std::size_t>(capacity)));
  if (grown == nullptr) throw std::bad_alloc();
  static_cast<void>(data_.release());
  data_.reset(grown);
  capacity_ = static_cast<std::uint32_t>(capacity);
}

}  // namespace poker
