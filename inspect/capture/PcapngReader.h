#pragma once

#include <inspect/capture/CapturedFrame.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace poker {

/// Reads the frames of a pcapng capture that names our dissector, as PcapngWriter makes them and other programs copy and
/// cut them: either byte order, any options, several sections. Other packets are skipped and counted. Needs memory for one
/// block and the interfaces' names, whatever the length of the file.
class PcapngReader final : public FrameSource {
 public:
  /// Writes the next bytes to the front of `space` and says how many: none at the end. May throw std::runtime_error.
  using ReadBytes = std::function<std::size_t(std::span<std::uint8_t> space)>;

  /// @param longestFrame  a block that is much longer is not believed
  /// @param size          of the input, where it is known
  explicit PcapngReader(ReadBytes read, std::uint32_t longestFrame = 64 * 1024 * 1024,
                        std::optional<std::uint64_t> size = {});

  /// A packet whose frame is cut or damaged has a `problem`; so has a last frame without bytes when the file cannot be
  /// followed any more. The frame's `offset` is that of its first byte in the file.
  bool next(CapturedFrame& frame) override;
  std::uint64_t position() const override { return position_; }
  std::optional<std::uint64_t> size() const override { return size_; }

  /// Packets so far that are not for our dissector.
  std::uint64_t skippedPackets() const { return skippedPackets_; }

 private:
  struct Interface {
    std::uint16_t linkType = 0;
    std::string name;
    std::uint8_t resolution = 6;  // as the option has it: a power of ten, or with the top bit of two
    std::int64_t offset = 0;      // seconds
  };
  struct Packet {
    std::span<const std::uint8_t> frame;
    NetworkEnd source, destination;
    bool hasPorts = false;
    bool isOurs = false;
  };
  enum class Block : std::uint8_t { End, Skipped, Packet };

  Block readBlock();
  bool readSection(std::uint32_t rawLength);
  bool readBody(std::uint32_t length);
  bool skipBody(std::uint32_t length, std::size_t consumed);
  std::size_t fill(std::span<std::uint8_t> space);
  bool fail(std::string problem);
  void addInterface();
  bool takePacket(CapturedFrame& frame);
  Packet parseExported(std::span<const std::uint8_t> packet) const;
  std::int64_t nanoseconds(const Interface& interface, std::uint64_t ticks) const;
  std::uint16_t number16(std::span<const std::uint8_t> bytes) const;
  std::uint32_t number32(std::span<const std::uint8_t> bytes) const;
  /// Calls `f(code, value)` for each whole option.
  template <class F>
  void forEachOption(std::span<const std::uint8_t> options, F&& f) const;

  ReadBytes read_;
  std::uint32_t longestBlock_;
  std::optional<std::uint64_t> size_;
  std::uint64_t position_ = 0;
  std::uint64_t blockStart_ = 0;
  bool inSection_ = false;
  bool bigEndian_ = false;
  bool ended_ = false;
  std::vector<Interface> interfaces_;
  std::vector<std::uint8_t> body_;  // of the block: between the two lengths
  std::uint64_t frames_ = 0;
  std::uint64_t skippedPackets_ = 0;
  std::string problem_;
  std::string connection_;
  NetworkEnd connectionEnd_;
};

}  // namespace poker
