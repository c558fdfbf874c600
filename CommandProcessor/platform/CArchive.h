#pragma once

#include <CommandProcessor/platform/Export.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <vector>

namespace poker {

/// Thrown by value; the archive's position is then where it was before the failed call.
class COMMANDPROCESSOR_API CArchiveException : public std::runtime_error {
 public:
  enum class Cause : std::uint8_t {
    endOfFile,  ///< fewer bytes are left than were asked for
    readOnly,   ///< a write to an archive that loads
    writeOnly,  ///< a read from an archive that stores
  };

  explicit CArchiveException(Cause cause);
  CArchiveException(const CArchiveException&) = default;
  CArchiveException& operator=(const CArchiveException&) = default;
  ~CArchiveException() override;

  Cause cause() const noexcept { return cause_; }

 private:
  Cause cause_;
};

/// The storage form of value types: raw bytes and counts, one after the other, in a byte vector that the caller keeps
/// alive. An archive either loads from the start of the bytes or stores behind their end. One thread at a time.
class COMMANDPROCESSOR_API CArchive {
 public:
  enum Mode : std::uint8_t { store = 0, load = 1 };

  CArchive(std::vector<std::uint8_t>& bytes, Mode mode) noexcept;

  /// Loads.
  explicit CArchive(std::span<const std::uint8_t> bytes) noexcept : input_(bytes) {}

  bool IsLoading() const noexcept { return output_ == nullptr; }
  bool IsStoring() const noexcept { return output_ != nullptr; }

  /// Bytes not read yet; 0 when storing.
  std::size_t remaining() const noexcept { return input_.size(); }

  /// Reads exactly `size` bytes or throws; the result is `size`.
  std::size_t Read(void* destination, std::size_t size);
  void Write(const void* source, std::size_t size);

  /// A count takes 2 bytes below 0xFFFF; else 0xFFFF and 4 bytes below 0xFFFFFFFF; else both markers and 8 bytes. All
  /// little-endian. What is read is only what the bytes claim: check it against remaining() before allocating.
  std::uint64_t ReadCount();
  void WriteCount(std::uint64_t count);

 private:
  std::span<const std::uint8_t> input_;  ///< the unread rest
  std::vector<std::uint8_t>* output_ = nullptr;
};

}  // namespace poker
