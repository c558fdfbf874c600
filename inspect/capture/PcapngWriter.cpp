#include <inspect/capture/PcapngFormat.h>
#include <inspect/capture/PcapngWriter.h>
#include <inspect/capture/Redact.h>

#include <algorithm>
#include <array>

namespace poker {

namespace {

constexpr std::string_view kSystemName =
#if defined(_WIN32)
    "Windows";
#elif defined(__linux__)
    "Linux";
#elif defined(__APPLE__)
    "macOS";
#else
    "";
#endif

constexpr std::string_view kHardwareName =
#if defined(__x86_64__) || defined(_M_X64)
    "x86-64";
#elif defined(__aarch64__) || defined(_M_ARM64)
    "arm64";
#elif defined(__i386__) || defined(_M_IX86)
    "x86";
#else
    "";
#endif

constexpr std::uint16_t kMajorVersion = 1, kMinorVersion = 0;
constexpr std::uint64_t kLengthUnknown = UINT64_MAX;
constexpr std::uint32_t kNoSnapLength = 0;
constexpr std::uint8_t kNanoseconds = 9;  // tenths' power

std::span<const std::uint8_t> bytesOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace

template <class T>
void PcapngWriter::number(T value) {
  for (std::size_t i = 0; i < sizeof value; ++i) bytes_.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}

template <class T>
void PcapngWriter::bigEndian(T value) {
  for (std::size_t i = sizeof value; i-- > 0;) bytes_.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}

PcapngWriter::PcapngWriter(std::string_view application) {
  const std::size_t start = beginBlock(pcapng::kSectionHeader);
  number(pcapng::kByteOrderMagic);
  number(kMajorVersion);
  number(kMinorVersion);
  number(kLengthUnknown);
  if (!kHardwareName.empty()) option(pcapng::kHardware, kHardwareName);
  if (!kSystemName.empty()) option(pcapng::kSystem, kSystemName);
  option(pcapng::kApplication, application);
  option(pcapng::kEndOfOptions, std::string_view());
  endBlock(start);
}

void PcapngWriter::write(const CapturedFrame& frame, const FrameEnds& ends) {
  const bool isInbound = frame.direction == CommandDirection::ClientToServer;
  const std::uint32_t interface = interfaceOf(frame.table);
  const auto time = static_cast<std::uint64_t>(frame.time.value_or(0));

  const std::size_t start = beginBlock(pcapng::kEnhancedPacket);
  number(interface);
  number(static_cast<std::uint32_t>(time >> 32));
  number(static_cast<std::uint32_t>(time));
  const std::size_t sizes = bytes_.size();
  bytes_.resize(sizes + 8);
  const std::size_t packet = bytes_.size();
  exportedHeader(isInbound ? ends.client : ends.server, isInbound ? ends.server : ends.client);
  append(frame.bytes);
  redactSecrets(std::span(bytes_).last(frame.bytes.size()));
  const auto size = static_cast<std::uint32_t>(bytes_.size() - packet);
  for (std::size_t i = 0; i < 8; ++i) bytes_[sizes + i] = static_cast<std::uint8_t>(size >> 8 * (i % 4));
  pad();

  if (frame.direction) {
    std::array<std::uint8_t, 4> flags{static_cast<std::uint8_t>(isInbound ? pcapng::kInbound : pcapng::kOutbound)};
    option(pcapng::kFlags, flags);
  }
  if (frame.hand != 0) option(pcapng::kComment, std::string(pcapng::kHandComment) + std::to_string(frame.hand));
  option(pcapng::kEndOfOptions, std::string_view());
  endBlock(start);
}

std::uint32_t PcapngWriter::interfaceOf(std::string_view table) {
  if (const auto known = interfaces_.find(table); known != interfaces_.end()) return known->second;
  const std::size_t start = beginBlock(pcapng::kInterface);
  number(pcapng::kExportedPackets);
  number(std::uint16_t{0});
  number(kNoSnapLength);
  if (!table.empty()) option(pcapng::kName, table);
  option(pcapng::kTimeResolution, std::array{kNanoseconds});
  option(pcapng::kEndOfOptions, std::string_view());
  endBlock(start);
  return interfaces_.emplace(table, static_cast<std::uint32_t>(interfaces_.size())).first->second;
}

std::size_t PcapngWriter::beginBlock(std::uint32_t type) {
  const std::size_t start = bytes_.size();
  number(type);
  number(std::uint32_t{0});  // the length, once it is known
  return start;
}

void PcapngWriter::endBlock(std::size_t start) {
  const auto length = static_cast<std::uint32_t>(bytes_.size() - start + 4);
  for (std::size_t i = 0; i < 4; ++i) bytes_[start + 4 + i] = static_cast<std::uint8_t>(length >> 8 * i);
  number(length);
}

void PcapngWriter::option(std::uint16_t code, std::span<const std::uint8_t> value) {
  value = value.first(std::min<std::size_t>(value.size(), UINT16_MAX));
  number(code);
  number(static_cast<std::uint16_t>(value.size()));
  append(value);
  pad();
}

void PcapngWriter::option(std::uint16_t code, std::string_view value) { option(code, bytesOf(value)); }

void PcapngWriter::exportedHeader(const NetworkEnd& source, const NetworkEnd& destination) {
  std::array<std::uint8_t, (pcapng::kDissector.size() + 3) / 4 * 4> dissector{};
  std::copy(pcapng::kDissector.begin(), pcapng::kDissector.end(), dissector.begin());
  const auto address = [](const NetworkEnd& end) { return std::span(end.address).first(end.isV6 ? 16 : 4); };
  const auto number32 = [this](std::uint16_t type, std::uint32_t value) {
    bigEndian(type);
    bigEndian(std::uint16_t{4});
    bigEndian(value);
  };
  tag(pcapng::kDissectorName, dissector);
  tag(source.isV6 ? pcapng::kSourceV6 : pcapng::kSourceV4, address(source));
  tag(destination.isV6 ? pcapng::kDestinationV6 : pcapng::kDestinationV4, address(destination));
  number32(pcapng::kPortType, pcapng::kPortOfTcp);
  number32(pcapng::kSourcePort, source.port);
  number32(pcapng::kDestinationPort, destination.port);
  tag(pcapng::kEndOfTags, {});
}

void PcapngWriter::tag(std::uint16_t type, std::span<const std::uint8_t> value) {
  bigEndian(type);
  bigEndian(static_cast<std::uint16_t>(value.size()));
  append(value);
}

}  // namespace poker
