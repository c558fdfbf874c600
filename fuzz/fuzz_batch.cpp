// A batch as a peer sends it, through the host's limits, against zlib asked directly. An input is the batch's fields: real
// size, compressed size, body.

#include <CommandProcessor/wire/WireNumber.h>
#include <fuzz/support/Frames.h>
#include <fuzz/support/Reading.h>
#include <hostkit/Batch.h>
#include <hostkit/Decode.h>
#include <hostkit/Encode.h>

#include <zlib.h>

#include <algorithm>

using namespace poker;
using namespace poker::fuzz;

namespace {

constexpr std::size_t kSizes = 8;           // real and compressed size in front of the body
constexpr std::size_t kLongestMade = 4096;  // of what the mutator compresses

const CommandClass& batchClass() {
  static const CommandClass& named = *CommandFactory::find("SrvCompressedCommands");
  return named;
}

/// Inflates up to `room` bytes of a zlib stream.
/// @return whether the stream ends, soundly, within them
bool inflateInto(Bytes& out, std::span<const std::uint8_t> body, std::size_t room) {
  static z_stream stream = [] {
    z_stream made{};
    require(inflateInit(&made) == Z_OK, "zlib starts");
    return made;
  }();
  out.resize(room);
  inflateReset(&stream);
  stream.next_in = const_cast<Bytef*>(body.data());
  stream.avail_in = static_cast<uInt>(body.size());
  stream.next_out = out.data();
  stream.avail_out = static_cast<uInt>(room);
  const int result = inflate(&stream, Z_FINISH);
  out.resize(stream.total_out);
  return result == Z_STREAM_END;
}

/// Whether the bytes are whole frames, none of them a batch.
bool areFrames(std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    if (bytes.size() < 6) return false;
    const auto length = wire::loadLittleEndian<std::uint32_t>(bytes.data());
    if (length < 6 || length > bytes.size()) return false;
    if (bytes[4] == batchClass().code() && bytes[5] == static_cast<std::uint8_t>(batchClass().family())) return false;
    bytes = bytes.subspan(length);
  }
  return true;
}

/// A zlib stream that holds the bytes as they are: quick to make, and its inside can be changed in place.
void appendStored(Bytes& out, std::span<const std::uint8_t> bytes) {
  out.insert(out.end(), {0x78, 0x01});
  const auto length = static_cast<std::uint16_t>(bytes.size());
  for (const std::uint16_t part : {length, static_cast<std::uint16_t>(~length)}) {
    if (part == length) out.push_back(1);  // the last block
    out.push_back(static_cast<std::uint8_t>(part));
    out.push_back(static_cast<std::uint8_t>(part >> 8));
  }
  out.insert(out.end(), bytes.begin(), bytes.end());
  const uLong check = adler32(adler32(0, nullptr, 0), bytes.data(), static_cast<uInt>(bytes.size()));
  for (int shift = 24; shift >= 0; shift -= 8) out.push_back(static_cast<std::uint8_t>(check >> shift));
}

void appendDeflated(Bytes& out, std::span<const std::uint8_t> bytes) {
  uLongf length = compressBound(static_cast<uLong>(bytes.size()));
  const std::size_t start = out.size();
  out.resize(start + length);
  compress2(out.data() + start, &length, bytes.data(), static_cast<uLong>(bytes.size()), Z_BEST_SPEED);
  out.resize(start + length);
}

Bytes batchOf(const Bytes& frames, bool stored) {
  Bytes batch(kSizes);
  (stored ? appendStored : appendDeflated)(batch, frames);
  wire::storeLittleEndian(batch.data(), static_cast<std::uint32_t>(frames.size()));
  wire::storeLittleEndian(batch.data() + 4, static_cast<std::uint32_t>(batch.size() - kSizes));
  return batch;
}

/// What a host must say, from the announced sizes and zlib alone.
bool isSound(std::uint32_t real, std::span<const std::uint8_t> body) {
  static Bytes inside;
  if (real > kLargestBatch || real > body.size() * std::uint64_t{1032} + 64) return false;
  return inflateInto(inside, body, std::size_t{real} + 1) && inside.size() == real && areFrames(inside);
}

void checkPacking(std::span<const std::uint8_t> frames) {
  static SerializeCommandBuf buffer(4096);
  const auto packed = packBatch(frames, buffer);
  if (packed.empty()) return;  // would be no smaller
  require(packed.size() < frames.size() && isBatch(packed), "a batch is smaller than what it holds");
  DecodeResult batch = decodeCommand(packed.subspan(4), DecodePolicy::of(Side::Client));
  require(static_cast<bool>(batch), "what was packed can be read");
  Bytes again;
  require(unpackBatch(static_cast<SrvCompressedCommands&>(*batch.command), again).empty() &&
              std::equal(again.begin(), again.end(), frames.begin(), frames.end()),
          "what was packed is unpacked as the same");
}

}  // namespace

std::vector<Bytes> fuzz::seeds() {
  std::vector<Bytes> made;
  Bytes all;
  for (const Bytes& command : goldenCommands()) {
    if (all.size() + command.size() > kLongestMade) break;
    appendFrame(all, command);
    if (made.size() < 8) made.push_back(batchOf(all, made.size() % 2 == 0));
  }
  made.push_back(batchOf(all, false));
  made.push_back(batchOf({}, false));
  made.push_back(batchOf(Bytes(kLongestMade, 7), false));
  return made;
}

void fuzz::mutate(Bytes& input, Random& random) {
  static Bytes frames;
  if (input.size() < kSizes || random.oneIn(4)) return mutateBytes(input, random, random.oneIn(4) ? 0 : kSizes);
  if (random.oneIn(6)) {  // a size
    const std::size_t slot = random.oneIn(2) ? 0 : 4;
    const auto held = wire::loadLittleEndian<std::uint32_t>(&input[slot]);
    wire::storeLittleEndian(&input[slot], static_cast<std::uint32_t>(edge(held, input.size() - kSizes, random)));
    return;
  }
  inflateInto(frames, std::span(input).subspan(kSizes), kLongestMade);
  switch (random.below(4)) {
    case 0:
      mutateBytes(frames, random);
      break;
    case 1:
      if (random.oneIn(4)) frames.clear();
      appendFrame(frames, randomCommand(random));
      break;
    case 2: {  // a frame of it
      std::size_t at = 0;
      while (frames.size() - at >= 6) {
        const auto length = wire::loadLittleEndian<std::uint32_t>(&frames[at]);
        if (length < 6 || length > frames.size() - at) break;
        if (random.oneIn(3)) {
          Bytes command(frames.begin() + static_cast<std::ptrdiff_t>(at + 4),
                        frames.begin() + static_cast<std::ptrdiff_t>(at + length));
          mutateCommand(command, random);
          Bytes frame;
          appendFrame(frame, command);
          frames.erase(frames.begin() + static_cast<std::ptrdiff_t>(at),
                       frames.begin() + static_cast<std::ptrdiff_t>(at + length));
          frames.insert(frames.begin() + static_cast<std::ptrdiff_t>(at), frame.begin(), frame.end());
          break;
        }
        at += length;
      }
      break;
    }
    default: {  // a batch in the batch
      Bytes inner = {batchClass().code(), static_cast<std::uint8_t>(batchClass().family())};
      const Bytes fields = batchOf(frames, true);
      inner.insert(inner.end(), fields.begin(), fields.end());
      if (!random.oneIn(4)) frames.clear();
      appendFrame(frames, inner);
    }
  }
  if (frames.size() > kLongestMade) frames.resize(kLongestMade);
  input = batchOf(frames, !random.oneIn(16));
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Bytes command, frames;
  command.assign({batchClass().code(), static_cast<std::uint8_t>(batchClass().family())});
  command.insert(command.end(), data, data + size);
  DecodeResult result = [] {
    const MemoryBound bound(command.size() + 4);
    return decodeCommand(command, DecodePolicy::of(Side::Client));
  }();
  if (!result) return 0;
  auto& batch = static_cast<SrvCompressedCommands&>(*result.command);
  const std::uint32_t real = batch.realSize();
  const std::span<const std::uint8_t> body(data + kSizes, batch.compressedSize());
  const bool sound = isSound(real, body);

  frames.clear();
  const std::size_t before = frames.capacity();
  const std::string_view problem = unpackBatch(batch, frames);
  require(sound == problem.empty(), "a host takes a batch that zlib and the announced sizes find sound, and no other");
  require(frames.capacity() <= std::max<std::size_t>(before, std::min(real, kLargestBatch)),
          "no more memory is set aside than the batch may hold");
  if (!sound) return 0;
  std::size_t taken = 0;
  for (std::span<const std::uint8_t> rest = frames; !rest.empty();) taken += takeFrame(rest).size();
  require(taken == frames.size() && taken == real, "the frames are all of the batch");
  if (size % 8 == 0) checkPacking(frames);  // slow beside the rest
  return 0;
}
