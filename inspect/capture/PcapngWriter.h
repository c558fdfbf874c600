#pragma once

#include <inspect/capture/CapturedFrame.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace poker {

/// Makes a capture of frames, as pcapng: an interface a table, each packet a frame behind the header that names our
/// dissector and both ends, with time, direction and, as its comment, the hand. Secrets are overwritten (Redact.h) before
/// a frame gets into the blocks. This makes bytes; PcapngFile puts them into a file.
class PcapngWriter {
 public:
  /// Begins with the section header.
  /// @param application  that writes the capture
  explicit PcapngWriter(std::string_view application);

  /// Adds the frame, and before it its table's interface if that is new. A frame without time is from 1970.
  void write(const CapturedFrame& frame, const FrameEnds& ends);

  /// The whole blocks that were made since the last clear().
  std::span<const std::uint8_t> blocks() const { return bytes_; }
  void clear() { bytes_.clear(); }

 private:
  std::uint32_t interfaceOf(std::string_view table);
  std::size_t beginBlock(std::uint32_t type);
  void endBlock(std::size_t start);
  void option(std::uint16_t code, std::span<const std::uint8_t> value);
  void option(std::uint16_t code, std::string_view value);
  void exportedHeader(const NetworkEnd& source, const NetworkEnd& destination);
  void tag(std::uint16_t type, std::span<const std::uint8_t> value);
  void append(std::span<const std::uint8_t> bytes) { bytes_.insert(bytes_.end(), bytes.begin(), bytes.end()); }
  void pad() { bytes_.resize((bytes_.size() + 3) / 4 * 4); }
  template <class T>
  void number(T value);
  template <class T>
  void bigEndian(T value);

  std::vector<std::uint8_t> bytes_;
  std::map<std::string, std::uint32_t, std::less<>> interfaces_;
};

}  // namespace poker
