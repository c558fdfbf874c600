#include <CommandProcessor/platform/COleDateTime.h>
#include <CommandProcessor/wire/CommandDeserializeException.h>
#include <CommandProcessor/wire/DeserializeCommandBuf.h>

namespace poker {

namespace {

[[noreturn]] void fail(const char* message) { throw new CommandDeserializeException(message); }

}  // namespace

void DeserializeCommandBuf::failNumber() { fail("CommandBuf::readNumber - bufSize == 0"); }

std::uint32_t DeserializeCommandBuf::getFieldLen() const {
  const void* nul = remaining_ == 0 ? nullptr : std::memchr(data_ + position_, 0, remaining_);
  if (nul == nullptr) fail("CommandBuf::getFieldLen - bufSize == 0");
  return static_cast<std::uint32_t>(static_cast<const std::uint8_t*>(nul) - (data_ + position_));
}

void DeserializeCommandBuf::readString(std::string& text) {
  if (remaining_ == 0) fail("CommandBuf::readString - bufSize == 0");
  const std::uint32_t length = getFieldLen();
  text.assign(reinterpret_cast<const char*>(data_ + position_), length);
  skip(length + 1);
}

void DeserializeCommandBuf::readString(char* storage, std::uint32_t capacity) {
  constexpr auto kDoesNotFit = "CommandBuf::readString - bufSize == 0 or readed string longer that storage";
  if (remaining_ == 0) fail(kDoesNotFit);
  const std::uint32_t length = getFieldLen();
  if (length >= capacity) fail(kDoesNotFit);
  std::memcpy(storage, data_ + position_, length);
  storage[length] = '\0';
  skip(length + 1);
}

void DeserializeCommandBuf::read(COleDateTime& value) {
  std::uint64_t bits;
  read(bits);
  value = COleDateTime::fromBits(bits, COleDateTime::valid);
}

}  // namespace poker
