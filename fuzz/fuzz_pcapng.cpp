// A capture that anybody may have made: read in bounded memory, the same however the bytes arrive; and what is whole in it
// survives being written again.

#include <fuzz/support/Frames.h>
#include <inspect/capture/PcapngReader.h>
#include <inspect/capture/PcapngWriter.h>
#include <inspect/capture/Redact.h>
#include <tests/support/AllocationCounter.h>

#include <algorithm>
#include <functional>

using namespace poker;
using namespace poker::fuzz;

namespace {

constexpr std::uint32_t kLongestFrame = 64 * 1024;

/// What a reader finds: a number for all it tells, and what is whole.
struct Found {
  std::uint64_t told = 0;
  std::size_t frames = 0;
  Bytes written;  // the whole ones, as a capture

  void clear() {
    told = 0;
    frames = 0;
    written.clear();
  }
};

template <class T>
std::uint64_t mixed(std::uint64_t state, const T& value) {
  return (state ^ std::hash<T>()(value)) * 0x9E3779B97F4A7C15;
}

std::uint64_t mixed(std::uint64_t told, const CapturedFrame& frame) {
  told = mixed(told, textOf(frame.bytes));
  told = mixed(told, frame.number);
  told = mixed(told, frame.offset);
  told = mixed(told, frame.time.value_or(-1));
  told = mixed(told, frame.direction ? static_cast<int>(*frame.direction) : -1);
  told = mixed(told, frame.connection);
  told = mixed(told, frame.table);
  told = mixed(told, frame.hand);
  return mixed(told, frame.problem);
}

/// Reads a capture whose bytes come in parts of at most so many.
template <class Each>
void readAll(std::span<const std::uint8_t> capture, std::size_t part, Each&& each) {
  std::size_t given = 0;
  const test::AllocationCounter memory;
  PcapngReader reader(
      [&](std::span<std::uint8_t> space) {
        const auto bytes = capture.subspan(given, std::min({part, space.size(), capture.size() - given}));
        std::copy(bytes.begin(), bytes.end(), space.begin());
        given += bytes.size();
        return bytes.size();
      },
      kLongestFrame);
  CapturedFrame frame;
  std::uint64_t number = 0;
  while (reader.next(frame)) {
    require(frame.number == ++number, "frames are numbered");
    require(
        frame.bytes.empty() || (frame.offset <= capture.size() && frame.bytes.size() <= capture.size() - frame.offset &&
                                std::equal(frame.bytes.begin(), frame.bytes.end(),
                                           capture.begin() + static_cast<std::ptrdiff_t>(frame.offset))),
        "a frame is what stands at its offset");
    require(!frame.problem.empty() || frame.bytes.size() >= 6, "a frame without a problem is a whole one");
    each(frame);
  }
  require(!reader.next(frame), "the end stays the end");
  require(reader.position() <= capture.size() && reader.position() == given, "the position is what was read");
  require(memory.peak() <= 4 * capture.size() + 256 * 1024, "memory stays in proportion to the capture");
}

}  // namespace

std::vector<Bytes> fuzz::seeds() {
  std::vector<Bytes> made;
  const FrameEnds ends{{.address = {127, 0, 0, 1}, .port = 50001}, {.isV6 = true, .address = {1, 2}, .port = 4000}};
  const std::vector<Bytes> commands = goldenCommands();
  for (std::size_t first = 0; first < commands.size(); first += 40) {
    PcapngWriter writer("fuzz");
    for (std::size_t i = first; i < std::min(first + 2, commands.size()); ++i) {
      Bytes frame;
      appendFrame(frame, commands[i]);
      writer.write({.bytes = frame,
                    .time = 1'700'000'000'000'000'000,
                    .direction = classOf(commands[i])->direction(),
                    .table = i % 2 == 0 ? "Rome" : "",
                    .hand = i % 3},
                   ends);
    }
    made.emplace_back(writer.blocks().begin(), writer.blocks().end());
  }
  return made;
}

void fuzz::mutate(Bytes& input, Random& random) {
  // The blocks that can be followed, of which one gets other bytes, sizes that agree again, or a copy.
  std::size_t at = 0, length = 0;
  const auto number = [&](std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t i = 4; i-- > 0;) value = value << 8 | input[offset + i];
    return value;
  };
  for (std::size_t next = 0; input.size() - next >= 12; next += length) {
    const std::uint32_t said = number(next + 4);
    if (said < 12 || said > input.size() - next) break;
    at = next;
    length = said;
    if (random.oneIn(4)) break;
  }
  if (length == 0 || random.oneIn(8)) return mutateBytes(input, random);
  const auto begin = input.begin() + static_cast<std::ptrdiff_t>(at);
  const auto end = begin + static_cast<std::ptrdiff_t>(length);
  Bytes block(begin, end);
  if (random.oneIn(6)) {
    input.insert(end, block.begin(), block.end());
    return;
  }
  if (random.oneIn(3)) {  // a number of its head, or of an option's
    const std::size_t slot = 8 + random.below((block.size() - 8) / 2) * 2, width = random.oneIn(2) ? 2 : 4;
    const std::uint64_t value = edge(block[slot], block.size() - slot, random);
    for (std::size_t i = 0; i < width && slot + i < block.size(); ++i) {
      block[slot + i] = static_cast<std::uint8_t>(value >> 8 * i);
    }
  } else {
    mutateBytes(block, random, 8);
    block.resize(std::max<std::size_t>((block.size() + 3) / 4 * 4, 12));
  }
  for (std::size_t i = 0; i < 4; ++i) {
    block[4 + i] = block[block.size() - 4 + i] = static_cast<std::uint8_t>(block.size() >> 8 * i);
  }
  input.erase(begin, end);
  input.insert(input.begin() + static_cast<std::ptrdiff_t>(at), block.begin(), block.end());
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // The classes with secrets are looked up once a process: no capture is to answer for that memory.
  static const bool looked = [] {
    Bytes frame(6);
    redactSecrets(frame);
    return true;
  }();
  static_cast<void>(looked);
  const std::span<const std::uint8_t> capture(data, size);
  PcapngWriter writer("fuzz");
  std::uint64_t told = 0, toldInParts = 0;
  std::size_t whole = 0;
  readAll(capture, SIZE_MAX, [&](const CapturedFrame& frame) {
    told = mixed(told, frame);
    if (!frame.problem.empty() || size % 4 != 0) return;  // writing is slow beside reading
    writer.write(frame, {});
    ++whole;
  });
  readAll(capture, 1 + size % 13, [&](const CapturedFrame& frame) { toldInParts = mixed(toldInParts, frame); });
  require(told == toldInParts, "a capture tells the same however its bytes arrive");
  if (whole == 0) return 0;
  readAll(writer.blocks(), SIZE_MAX, [&](const CapturedFrame& frame) {
    require(frame.problem.empty(), "what was whole is whole when it was written again");
    --whole;
  });
  require(whole == 0, "all that was written is read again");
  return 0;
}
