#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/wire/SrvCompressedCommands.h>

#include <zlib.h>

#include <algorithm>
#include <limits>
#include <new>

namespace poker {

void SrvCompressedCommands::init(const unsigned char* bytes, unsigned size) {
  if (bytes == nullptr) size = 0;
  clearConnections();
  realSize_ = 0;
  body_.clear();
  zlibResult_ = Z_OK;

  const std::uint64_t room = compressionRoom(size);
  if (room > body_.max_size()) throw std::bad_alloc();
  body_.resize(static_cast<std::size_t>(room));
  // zlib counts in longs, which are 32 bits wide on some systems.
  auto length = static_cast<uLongf>(std::min<std::uint64_t>(room, std::numeric_limits<uLongf>::max()));
  const int result = compress2(body_.data(), &length, bytes, size, Z_DEFAULT_COMPRESSION);
  if (const std::uint64_t produced = length; result != Z_OK || produced > std::numeric_limits<std::uint32_t>::max()) {
    body_.clear();
    throw std::bad_alloc();
  }
  body_.resize(length);
  realSize_ = size;
}

void SrvCompressedCommands::getUncompressedData(unsigned char* destination) {
  // Without any room zlib inflates into a byte of its own, and is content with a body that fills just that.
  std::uint8_t spare = 0;
  const bool hasRoom = realSize_ != 0;
  uLongf length = hasRoom ? realSize_ : sizeof spare;
  zlibResult_ = uncompress(hasRoom ? destination : &spare, &length, body_.data(), static_cast<uLong>(body_.size()));
  if (!hasRoom && length != 0) {
    zlibResult_ = Z_BUF_ERROR;
    length = 0;
  }
  realSize_ = static_cast<std::uint32_t>(length);
  body_.clear();
}

void SrvCompressedCommands::fields(auto& self, auto&& field) {
  // Reading first drops the earlier batch, so that bytes that end within the sizes leave nothing of it either.
  field.local(self.realSize_);
  field.local(secret(bytes<std::uint32_t>(self.body_)));
  field.local(self.zlibResult_);
  field("realSize", self.realSize_);
  field("body", secret(bytes<std::uint32_t>(self.body_)));  // whatever is secret in the commands inside
}

template class Command<SrvCompressedCommands>;
template class CachedCmdCreator<SrvCompressedCommands>;

}  // namespace poker
