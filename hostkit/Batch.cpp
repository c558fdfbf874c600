#include <hostkit/Batch.h>

#include <CommandProcessor/wire/WireNumber.h>
#include <hostkit/CommandHandle.h>
#include <hostkit/Encode.h>
#include <hostkit/StreamFramer.h>

namespace poker {
namespace {

/// zlib makes no body smaller than a 1032nd of what it holds, and a few bytes around that.
constexpr std::uint64_t mostFrom(std::uint32_t compressed) { return std::uint64_t{compressed} * 1032 + 64; }

std::uint32_t lengthOf(std::span<const std::uint8_t> frame) {
  return wire::loadLittleEndian<std::uint32_t>(frame.data());
}

}  // namespace

// The slot only asks, but is not const.
bool mayCompress(const PokerCommandI& command) { return const_cast<PokerCommandI&>(command).canCompress(); }

bool isBatch(std::span<const std::uint8_t> frame) {
  using Batch = CommandInfo<SrvCompressedCommands>;
  return frame[kLengthSlot] == Batch::code && frame[kLengthSlot + 1] == static_cast<std::uint8_t>(Batch::family);
}

std::span<const std::uint8_t> packBatch(std::span<const std::uint8_t> frames, SerializeCommandBuf& buffer) {
  if (frames.size() > kLargestBatch) return {};
  const auto batch = make<SrvCompressedCommands>(frames.data(), static_cast<unsigned>(frames.size()));
  const std::span<const std::uint8_t> packed = encodeCommand(*batch, buffer);
  return packed.size() < frames.size() ? packed : std::span<const std::uint8_t>();
}

std::string_view unpackBatch(SrvCompressedCommands& batch, std::vector<std::uint8_t>& frames, std::uint32_t most) {
  const std::uint32_t size = batch.realSize();
  if (size > most) return "announces more than a batch may hold";
  if (size > mostFrom(batch.compressedSize())) return "announces more than its body can hold";
  frames.resize(size);
  batch.getUncompressedData(frames.data());
  if (batch.lastZlibResult() != 0) return "is damaged, or holds more than it announces";
  if (batch.realSize() != size) return "holds less than it announces";
  for (std::span<const std::uint8_t> rest = frames; !rest.empty(); takeFrame(rest)) {
    if (rest.size() < kShortestFrame || lengthOf(rest) < kShortestFrame || lengthOf(rest) > rest.size()) {
      return "holds something that is no whole frame";
    }
    if (isBatch(rest)) return "holds another batch";
  }
  return {};
}

std::span<const std::uint8_t> takeFrame(std::span<const std::uint8_t>& frames) {
  const std::span<const std::uint8_t> first = frames.first(lengthOf(frames));
  frames = frames.subspan(first.size());
  return first;
}

}  // namespace poker
