#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/wire/SrvCompressedCommands.h>

#include <zlib.h>

#include <algorithm>
#include <limits>
#include <new>
#include <optional>
#include <span>

namespace poker {
namespace {

/// zlib's working memory, a quarter of a megabyte, which a thread that packs keeps: to get it and to clear it would take
/// longer than to pack what is usual.
class Deflater {
 public:
  /// @throws std::bad_alloc  the thread has none yet, and there is no memory for one
  static Deflater& ofThisThread() {
    thread_local Deflater instance;
    return instance;
  }
  Deflater(const Deflater&) = delete;
  Deflater& operator=(const Deflater&) = delete;

  /// @return how many bytes were written, at most as many as there is room for; nothing if that is too little
  std::optional<std::size_t> pack(const unsigned char* bytes, unsigned size, std::span<std::uint8_t> room) {
    deflateReset(&stream_);
    stream_.next_in = const_cast<unsigned char*>(bytes);  // it only reads them
    stream_.avail_in = size;
    stream_.next_out = room.data();
    for (;;) {
      const auto written = static_cast<std::size_t>(stream_.next_out - room.data());
      // zlib counts in 32 bits here.
      stream_.avail_out =
          static_cast<uInt>(std::min<std::uint64_t>(room.size() - written, std::numeric_limits<uInt>::max()));
      if (stream_.avail_out == 0) return std::nullopt;
      const int result = deflate(&stream_, Z_FINISH);
      if (result == Z_STREAM_END) return static_cast<std::size_t>(stream_.next_out - room.data());
      if (result != Z_OK) return std::nullopt;
    }
  }

 private:
  Deflater() {
    if (deflateInit(&stream_, Z_DEFAULT_COMPRESSION) != Z_OK) throw std::bad_alloc();
  }
  ~Deflater() { deflateEnd(&stream_); }

  z_stream stream_{};
};

}  // namespace

void SrvCompressedCommands::init(const unsigned char* bytes, unsigned size) {
  if (bytes == nullptr) size = 0;
  clearConnections();
  realSize_ = 0;
  body_.clear();
  zlibResult_ = Z_OK;

  const std::uint64_t room = compressionRoom(size);
  if (room > body_.max_size()) throw std::bad_alloc();
  body_.resize(static_cast<std::size_t>(room));
  const std::optional<std::size_t> produced = Deflater::ofThisThread().pack(bytes, size, body_);
  if (!produced || *produced > std::numeric_limits<std::uint32_t>::max()) {
    body_.clear();
    throw std::bad_alloc();
  }
  body_.resize(*produced);
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
