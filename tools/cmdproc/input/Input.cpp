#include <inspect/capture/PcapngFormat.h>
#include <inspect/capture/PcapngReader.h>
#include <tools/cmdproc/input/Bytes.h>
#include <tools/cmdproc/input/Input.h>
#include <tools/cmdproc/input/StreamInput.h>
#ifdef CMDPROC_HAS_TCP
#include <tools/cmdproc/input/TcpInput.h>
#endif

#include <cstddef>
#include <span>
#include <stdexcept>
#include <utility>

namespace poker::cmdproc {

namespace {

void addPath(CLI::App& subcommand, InputOptions& options, const std::string& name, const std::string& help) {
  subcommand.add_option(name, options.path, help)->type_name("")->capture_default_str();
}

void addLongestFrame(CLI::App& subcommand, InputOptions& options) {
  subcommand.add_option("--max-frame", options.longestFrame, "the longest frame to believe in, in bytes")
      ->type_name("BYTES")
      ->check(CLI::Range(std::uint32_t{6}, std::uint32_t{1} << 31).description(""))
      ->capture_default_str();
}

}  // namespace

void addInput(CLI::App& subcommand, InputOptions& options) {
  addPath(subcommand, options, "FILE", "stream, text of bytes, or capture to read; - for standard input");
  subcommand.add_flag("--hex", options.hex, "the bytes are hexadecimal text; # begins a comment");
  addLongestFrame(subcommand, options);
}

void addCapture(CLI::App& subcommand, InputOptions& options) {
  addPath(subcommand, options, "CAPTURE", "capture of a server's recorder or of TCP; - for standard input");
  addLongestFrame(subcommand, options);
}

namespace {

enum class Kind : std::uint8_t { Stream, OurCapture, OtherCapture };

std::uint32_t numberAt(std::span<const std::uint8_t> bytes, bool bigEndian) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) value |= std::uint32_t{bytes[bigEndian ? 3 - i : i]} << 8 * i;
  return value;
}

/// Ours are recognised by their first interface, which follows the section header.
Kind kindOfPcapng(FileBytes& file) {
  constexpr std::size_t kSectionHead = 12, kInterfaceHead = 12;
  constexpr std::uint32_t kLongestSection = 1024 * 1024;
  const auto section = file.peek(kSectionHead);
  if (section.size() < kSectionHead) return Kind::OurCapture;  // says what is wrong with it
  const bool bigEndian = numberAt(section.subspan(8), true) == pcapng::kByteOrderMagic;
  const std::uint32_t length = numberAt(section.subspan(4), bigEndian);
  if (length > kLongestSection) return Kind::OurCapture;
  const auto both = file.peek(length + kInterfaceHead);
  if (both.size() < length + kInterfaceHead) return Kind::OurCapture;  // nothing in it, or not yet
  const auto interface = both.subspan(length);
  if (numberAt(interface, bigEndian) != pcapng::kInterface) return Kind::OtherCapture;
  const std::uint32_t link =
      bigEndian ? numberAt(interface.subspan(8), true) >> 16 : numberAt(interface.subspan(8), false) & 0xFFFF;
  return link == pcapng::kExportedPackets ? Kind::OurCapture : Kind::OtherCapture;
}

Kind kindOf(FileBytes& file) {
  const auto first = file.peek(4);
  if (first.size() < 4) return Kind::Stream;
  const std::uint32_t number = numberAt(first, false);
  if (number == pcapng::kSectionHeader) return kindOfPcapng(file);
  // pcap, of microseconds and of nanoseconds, in either byte order.
  const bool isPcap = number == 0xA1B2C3D4 || number == 0xD4C3B2A1 || number == 0xA1B23C4D || number == 0x4D3CB2A1;
  return isPcap ? Kind::OtherCapture : Kind::Stream;
}

std::unique_ptr<FrameSource> open(std::unique_ptr<FileBytes> file, Kind kind, std::uint32_t longestFrame) {
  switch (kind) {
    case Kind::OurCapture: {
      const auto size = file->size();
      const std::shared_ptr<FileBytes> shared = std::move(file);
      return std::make_unique<PcapngReader>([shared](std::span<std::uint8_t> space) { return shared->read(space); },
                                            longestFrame, size);
    }
    case Kind::OtherCapture:
#ifdef CMDPROC_HAS_TCP
      return openTcpCapture(std::move(file), longestFrame);
#else
      throw std::runtime_error(file->name() + ": this build reads no captures of TCP");
#endif
    case Kind::Stream:
      break;
  }
  return std::make_unique<StreamInput>(std::move(file), longestFrame);
}

}  // namespace

std::unique_ptr<FrameSource> openInput(const InputOptions& options) {
  auto file = std::make_unique<FileBytes>(options.path);
  if (options.hex) {
    return std::make_unique<StreamInput>(std::make_unique<HexBytes>(std::move(file)), options.longestFrame);
  }
  const Kind kind = kindOf(*file);
  return open(std::move(file), kind, options.longestFrame);
}

std::unique_ptr<FrameSource> openCapture(const InputOptions& options) {
  if (options.hex) throw UsageError("a capture is no hexadecimal text");
  auto file = std::make_unique<FileBytes>(options.path);
  const Kind kind = kindOf(*file);
  if (kind == Kind::Stream) throw UsageError(file->name() + ": is no capture");
  return open(std::move(file), kind, options.longestFrame);
}

}  // namespace poker::cmdproc
