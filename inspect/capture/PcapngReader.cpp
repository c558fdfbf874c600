#include <inspect/capture/PcapngFormat.h>
#include <inspect/capture/PcapngReader.h>

#include <algorithm>
#include <charconv>
#include <limits>

namespace poker {

namespace {

constexpr std::size_t kBlockHead = 8;  // type and length
constexpr std::uint32_t kShortestBlock = 12;
constexpr std::size_t kSectionHead = 16;   // of its body: byte order, version, length
constexpr std::size_t kInterfaceHead = 8;  // link type, reserved, longest packet
constexpr std::size_t kPacketHead = 20;    // interface, time, two lengths
constexpr std::size_t kOptionHead = 4;
constexpr std::uint32_t kRoomBesideFrame = 256 * 1024;  // header, options
constexpr std::size_t kMostInterfaces = 1'000'000;
constexpr std::size_t kStep = 64 * 1024;  // memory is set aside as bytes come
constexpr std::uint32_t kShortestFrame = 6;
constexpr std::int64_t kNanosecondsEach = 1'000'000'000;

constexpr std::size_t padded(std::size_t size) { return (size + 3) / 4 * 4; }

std::uint32_t littleEndian(std::span<const std::uint8_t> bytes) {
  std::uint32_t value = 0;
  for (std::size_t i = bytes.size(); i-- > 0;) value = value << 8 | bytes[i];
  return value;
}

std::uint32_t bigEndian(std::span<const std::uint8_t> bytes) {
  std::uint32_t value = 0;
  for (const std::uint8_t byte : bytes) value = value << 8 | byte;
  return value;
}

std::string_view textOf(std::span<const std::uint8_t> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// The direction of the classes that a frame may be of; none when it names no class.
std::optional<CommandDirection> directionOf(std::span<const std::uint8_t> frame) {
  if (frame.size() < kShortestFrame) return {};
  const auto rows = findCommands(static_cast<ProcessorFamily>(frame[5]), frame[4]);
  return rows.empty() ? std::optional<CommandDirection>() : rows.front().direction;
}

/// "hand 17"; 0 for any other comment.
std::uint64_t handIn(std::string_view comment) {
  std::uint64_t hand = 0;
  if (!comment.starts_with(pcapng::kHandComment)) return 0;
  comment.remove_prefix(pcapng::kHandComment.size());
  const auto [end, error] = std::from_chars(comment.data(), comment.data() + comment.size(), hand);
  return error == std::errc() && end == comment.data() + comment.size() ? hand : 0;
}

}  // namespace

PcapngReader::PcapngReader(ReadBytes read, std::uint32_t longestFrame, std::optional<std::uint64_t> size)
    : read_(std::move(read)),
      longestBlock_(std::min(longestFrame, std::numeric_limits<std::uint32_t>::max() - kRoomBesideFrame) +
                    kRoomBesideFrame),
      size_(size) {}

bool PcapngReader::next(CapturedFrame& frame) {
  while (!ended_) {
    const Block block = readBlock();
    if (block == Block::Packet && takePacket(frame)) return true;
    if (block != Block::End) continue;
    ended_ = true;
    if (problem_.empty()) return false;
    frame = {.number = ++frames_, .offset = blockStart_, .problem = problem_};
    return true;
  }
  return false;
}

// Blocks

std::size_t PcapngReader::fill(std::span<std::uint8_t> space) {
  std::size_t filled = 0;
  while (filled < space.size()) {
    const std::size_t received = read_(space.subspan(filled));
    if (received == 0) break;
    filled += received;
  }
  position_ += filled;
  return filled;
}

bool PcapngReader::fail(std::string problem) {
  problem_ = std::move(problem);
  return false;
}

/// The next block: a packet's is then in body_.
PcapngReader::Block PcapngReader::readBlock() {
  blockStart_ = position_;
  std::uint8_t head[kBlockHead];
  const std::size_t received = fill(head);
  if (received == 0) return Block::End;
  if (received < kBlockHead) {
    fail("the capture ends within a block, after " + std::to_string(received) + " bytes of it");
    return Block::End;
  }
  const std::uint32_t rawLength = littleEndian(std::span(head).subspan(4));
  // The section header's type reads the same in either byte order.
  if (littleEndian(std::span(head).first(4)) == pcapng::kSectionHeader) {
    return readSection(rawLength) ? Block::Skipped : Block::End;
  }
  if (!inSection_) {
    fail("the capture does not begin with a section header");
    return Block::End;
  }
  const std::uint32_t type = number32(std::span(head).first(4));
  const std::uint32_t length = number32(std::span(head).subspan(4));
  if (type != pcapng::kInterface && type != pcapng::kEnhancedPacket) {
    return skipBody(length, kBlockHead) ? Block::Skipped : Block::End;
  }
  if (!readBody(length)) return Block::End;
  if (type == pcapng::kEnhancedPacket) return Block::Packet;
  if (interfaces_.size() == kMostInterfaces) {
    fail("there are more than " + std::to_string(kMostInterfaces) + " interfaces");
    return Block::End;
  }
  addInterface();
  return Block::Skipped;
}

/// @param rawLength  of the block, whose byte order is not known yet
bool PcapngReader::readSection(std::uint32_t rawLength) {
  std::uint8_t magic[4];
  if (fill(magic) < sizeof magic) return fail("the capture ends within a section header");
  if (littleEndian(magic) == pcapng::kByteOrderMagic) {
    bigEndian_ = false;
  } else if (bigEndian(magic) == pcapng::kByteOrderMagic) {
    bigEndian_ = true;
  } else {
    return fail("a section header without the mark of its byte order");
  }
  std::uint8_t raw[4];
  for (std::size_t i = 0; i < 4; ++i) raw[i] = static_cast<std::uint8_t>(rawLength >> 8 * i);
  const std::uint32_t length = number32(raw);
  if (length < kShortestBlock + kSectionHead) return fail("a section header of " + std::to_string(length) + " bytes");
  inSection_ = true;
  interfaces_.clear();
  return skipBody(length, kBlockHead + sizeof magic);
}

/// Reads what follows the block's head, and checks the length behind it.
bool PcapngReader::readBody(std::uint32_t length) {
  if (length < kShortestBlock || length % 4 != 0 || length > longestBlock_) {
    return fail("a block of " + std::to_string(length) + " bytes");
  }
  const std::size_t size = length - kBlockHead;
  for (std::size_t filled = 0; filled < size;) {
    const std::size_t step = std::min(kStep, size - filled);
    if (body_.size() < filled + step) body_.resize(filled + step);
    const std::size_t received = fill(std::span(body_).subspan(filled, step));
    filled += received;
    if (received < step) {
      return fail("the capture ends within a block, after " + std::to_string(kBlockHead + filled) + " bytes of it");
    }
  }
  body_.resize(size);
  if (number32(std::span(body_).last(4)) != length) return fail("a block whose two lengths differ");
  body_.resize(size - 4);
  return true;
}

/// As above for a block that does not matter, however long.
/// @param consumed  so much of it is read
bool PcapngReader::skipBody(std::uint32_t length, std::size_t consumed) {
  if (length < kShortestBlock || length % 4 != 0) return fail("a block of " + std::to_string(length) + " bytes");
  std::uint8_t space[4096];
  std::size_t last = 0;
  for (std::size_t left = length - consumed; left != 0; left -= last) {
    // The length behind the block is not to be read in two parts.
    const std::size_t step = left <= sizeof space ? left : std::min(sizeof space, left - 4);
    last = fill(std::span(space).first(step));
    if (last < step) return fail("the capture ends within a block");
  }
  return number32(std::span(space).subspan(last - 4)) == length || fail("a block whose two lengths differ");
}

std::uint16_t PcapngReader::number16(std::span<const std::uint8_t> bytes) const {
  bytes = bytes.first(2);
  return static_cast<std::uint16_t>(bigEndian_ ? bigEndian(bytes) : littleEndian(bytes));
}

std::uint32_t PcapngReader::number32(std::span<const std::uint8_t> bytes) const {
  bytes = bytes.first(4);
  return bigEndian_ ? bigEndian(bytes) : littleEndian(bytes);
}

template <class F>
void PcapngReader::forEachOption(std::span<const std::uint8_t> options, F&& f) const {
  while (options.size() >= kOptionHead) {
    const std::uint16_t code = number16(options);
    const std::size_t size = number16(options.subspan(2));
    options = options.subspan(kOptionHead);
    if (code == pcapng::kEndOfOptions || size > options.size()) return;
    f(code, options.first(size));
    options = options.subspan(std::min(padded(size), options.size()));
  }
}

void PcapngReader::addInterface() {
  Interface& interface = interfaces_.emplace_back();
  if (body_.size() < kInterfaceHead) return;  // packets of it are none of ours
  const std::span<const std::uint8_t> body = body_;
  interface.linkType = number16(body);
  forEachOption(body.subspan(kInterfaceHead), [&](std::uint16_t code, std::span<const std::uint8_t> value) {
    if (code == pcapng::kName) {
      interface.name = textOf(value);
    } else if (code == pcapng::kTimeResolution && value.size() == 1) {
      interface.resolution = value[0];
    } else if (code == pcapng::kTimeOffset && value.size() == 8) {
      const std::uint64_t first = number32(value), second = number32(value.subspan(4));
      interface.offset = static_cast<std::int64_t>(bigEndian_ ? first << 32 | second : second << 32 | first);
    }
  });
}

// Packets

/// @return false when the packet is none of ours
bool PcapngReader::takePacket(CapturedFrame& frame) {
  const std::span<const std::uint8_t> body = body_;
  if (body.size() < kPacketHead || number32(body) >= interfaces_.size()) {
    problem_ = "a packet without an interface";
    frame = {.number = ++frames_, .offset = blockStart_, .problem = problem_};
    return true;
  }
  const Interface& interface = interfaces_[number32(body)];
  const std::size_t captured = number32(body.subspan(12));
  const std::size_t original = number32(body.subspan(16));
  const std::span<const std::uint8_t> rest = body.subspan(kPacketHead);
  Packet packet;
  if (interface.linkType == pcapng::kExportedPackets)
    packet = parseExported(rest.first(std::min(captured, rest.size())));
  if (!packet.isOurs) {
    ++skippedPackets_;
    return false;
  }

  frame = {.bytes = packet.frame,
           .number = ++frames_,
           .offset = blockStart_ + kBlockHead + static_cast<std::uint64_t>(packet.frame.data() - body.data()),
           .direction = directionOf(packet.frame),
           .table = interface.name};
  const std::uint64_t high = number32(body.subspan(4)), low = number32(body.subspan(8));
  frame.time = nanoseconds(interface, high << 32 | low);
  if (captured > rest.size()) {
    problem_ =
        "a packet of " + std::to_string(captured) + " bytes in a block that holds " + std::to_string(rest.size());
    frame.problem = problem_;
    return true;
  }
  forEachOption(rest.subspan(std::min(padded(captured), rest.size())),
                [&](std::uint16_t code, std::span<const std::uint8_t> value) {
                  if (code == pcapng::kComment) {
                    if (const std::uint64_t hand = handIn(textOf(value)); hand != 0) frame.hand = hand;
                  } else if (code == pcapng::kFlags && value.size() == 4) {
                    const std::uint32_t direction = number32(value) & pcapng::kDirectionBits;
                    if (direction == pcapng::kInbound) frame.direction = CommandDirection::ClientToServer;
                    if (direction == pcapng::kOutbound) frame.direction = CommandDirection::ServerToClient;
                  }
                });
  if (frame.direction && packet.hasPorts) {
    const NetworkEnd& client =
        *frame.direction == CommandDirection::ClientToServer ? packet.source : packet.destination;
    if (connection_.empty() || client != connectionEnd_) {
      connectionEnd_ = client;
      connection_ = toText(client);
    }
    frame.connection = connection_;
  }
  const std::uint64_t said = packet.frame.size() < 4 ? 0 : littleEndian(packet.frame.first(4));
  if (captured < original) {
    problem_ =
        "the capture holds " + std::to_string(captured) + " of a packet's " + std::to_string(original) + " bytes";
    frame.problem = problem_;
  } else if (packet.frame.size() < kShortestFrame || said != packet.frame.size()) {
    problem_ = "a packet with " + std::to_string(packet.frame.size()) + " bytes of a frame whose length is " +
               std::to_string(said);
    frame.problem = problem_;
  }
  return true;
}

/// Takes the header of tags off; its numbers are big-endian whatever the file's order.
PcapngReader::Packet PcapngReader::parseExported(std::span<const std::uint8_t> packet) const {
  Packet parsed;
  bool hasSource = false, hasDestination = false;
  while (packet.size() >= kOptionHead) {
    const std::uint32_t type = bigEndian(packet.first(2));
    const std::size_t size = bigEndian(packet.subspan(2, 2));
    packet = packet.subspan(kOptionHead);
    if (size > packet.size()) break;
    if (type == pcapng::kEndOfTags) {
      parsed.frame = packet.subspan(size);
      parsed.hasPorts = hasSource && hasDestination;
      return parsed;
    }
    const std::span<const std::uint8_t> value = packet.first(size);
    packet = packet.subspan(size);
    const auto setAddress = [&](NetworkEnd& end) {
      end.isV6 = size == 16;
      std::copy(value.begin(), value.end(), end.address.begin());
    };
    switch (type) {
      case pcapng::kDissectorName:
        parsed.isOurs = textOf(value).substr(0, textOf(value).find('\0')) == pcapng::kDissector;
        break;
      case pcapng::kSourceV4:
      case pcapng::kSourceV6:
        if (size == 4 || size == 16) setAddress(parsed.source);
        break;
      case pcapng::kDestinationV4:
      case pcapng::kDestinationV6:
        if (size == 4 || size == 16) setAddress(parsed.destination);
        break;
      case pcapng::kSourcePort:
        hasSource = size == 4;
        if (hasSource) parsed.source.port = static_cast<std::uint16_t>(bigEndian(value));
        break;
      case pcapng::kDestinationPort:
        hasDestination = size == 4;
        if (hasDestination) parsed.destination.port = static_cast<std::uint16_t>(bigEndian(value));
        break;
      default:
        break;
    }
  }
  // Cut in the header, maybe in front of the dissector's name.
  parsed.frame = packet.first(0);
  return parsed;
}

std::int64_t PcapngReader::nanoseconds(const Interface& interface, std::uint64_t ticks) const {
  constexpr std::uint8_t kPowerOfTwo = 0x80;
  constexpr unsigned kDigits = 9;
  std::uint64_t seconds = 0, fraction = 0;  // nanoseconds
  if ((interface.resolution & kPowerOfTwo) != 0) {
    const unsigned bits = interface.resolution & 0x7Fu;
    if (bits > 63) return 0;
    seconds = ticks >> bits;
    fraction = ticks & ((std::uint64_t{1} << bits) - 1);
    // Thirty bits of it are a nanosecond.
    fraction = bits > 30 ? ((fraction >> (bits - 30)) * kNanosecondsEach) >> 30 : fraction * kNanosecondsEach >> bits;
  } else {
    std::uint64_t perSecond = 1;
    for (unsigned i = 0; i < interface.resolution; ++i) {
      if (perSecond > UINT64_MAX / 10) return 0;
      perSecond *= 10;
    }
    seconds = ticks / perSecond;
    fraction = ticks % perSecond;
    for (unsigned i = interface.resolution; i < kDigits; ++i) fraction *= 10;
    for (unsigned i = kDigits; i < interface.resolution; ++i) fraction /= 10;
  }
  // What no clock shows wraps around.
  return static_cast<std::int64_t>((seconds + static_cast<std::uint64_t>(interface.offset)) * kNanosecondsEach +
                                   fraction);
}

}  // namespace poker
