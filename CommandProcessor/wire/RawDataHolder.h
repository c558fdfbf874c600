#pragma once

#include <CommandProcessor/wire/Record.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace poker {

/// A block of bytes that it owns.
///
///     size (32 bits), then the bytes
class COMMANDPROCESSOR_API RawDataHolder : public Record<RawDataHolder> {
 public:
  RawDataHolder() = default;
  RawDataHolder(const void* bytes, std::size_t size) { assign(bytes, size); }

  const std::uint8_t* data() const { return bytes_.data(); }
  std::uint8_t* data() { return bytes_.data(); }
  std::size_t size() const { return bytes_.size(); }
  bool empty() const { return bytes_.empty(); }
  void clear() { bytes_.clear(); }
  /// Replaces the block by a copy of the bytes.
  void assign(const void* bytes, std::size_t size) {
    const auto* const first = static_cast<const std::uint8_t*>(bytes);
    bytes_.assign(first, first + size);
  }

  friend bool operator==(const RawDataHolder& a, const RawDataHolder& b) { return a.bytes_ == b.bytes_; }

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) { field("bytes", wire::bytes<std::uint32_t>(self.bytes_)); }

  std::vector<std::uint8_t> bytes_;
};

}  // namespace poker
