#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>
#include <vector>

namespace poker {

/// A batch: the written bytes of one or more server commands, compressed into the body of a single one.
///
///     real size (32 bits), compressed size (32 bits), then that many bytes: one zlib stream (RFC 1950)
///
/// The host unpacks a batch before it dispatches what is inside: process() does nothing.
///
/// Both sizes and the body come from the peer. Before it sets memory aside, a host refuses a realSize() that is too large
/// for it, or larger than any body of compressedSize() bytes can hold; after unpacking it demands Z_OK from
/// lastZlibResult() and the real size that was announced. Neither alone will do: a body with a damaged check sum yields
/// all its bytes, and one whose real size is announced too small fills it exactly.
class COMMANDPROCESSOR_API SrvCompressedCommands final : public Command<SrvCompressedCommands> {
 public:
  /// The room that init() sets aside for the compressed form of `size` bytes: more than zlib ever needs.
  static constexpr std::uint64_t compressionRoom(std::uint32_t size) {
    return 13 + std::uint64_t{size} + size / 10;  // 13 and 1.1 times the size, truncated
  }

  /// Compresses the bytes at zlib's default level.
  /// @param bytes  `size` bytes; null makes a batch of 0 bytes, whatever the size
  /// @throws std::bad_alloc  also when the compressed size does not fit 32 bits; the batch is of 0 bytes then, without a
  ///                         body
  void init(const unsigned char* bytes, unsigned size);

  /// Inflates the body and drops it: works once a batch. realSize() becomes the number of bytes produced.
  /// @param destination  room for realSize() bytes, all of which may be overwritten
  void getUncompressedData(unsigned char* destination);

  /// What zlib returned to the last getUncompressedData(): 0 (Z_OK) when the body was sound; 0 also before any.
  int lastZlibResult() const { return zlibResult_; }

  /// The length of the bytes as they were given to init(), or as the sender announced it.
  std::uint32_t realSize() const { return realSize_; }
  /// The length of the body; 0 once it was unpacked.
  std::uint32_t compressedSize() const { return static_cast<std::uint32_t>(body_.size()); }

 private:
  friend FieldAccess;
  SrvCompressedCommands() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t realSize_ = 0;
  std::vector<std::uint8_t> body_;
  std::int32_t zlibResult_ = 0;
};

}  // namespace poker
