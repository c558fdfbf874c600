// One frame through a host's decoder: a command or one of the reader's messages with its place, in bounded memory; and
// what was read can be sent, and reads back as the same.

#include <CommandProcessor/wire/WireNumber.h>
#include <fuzz/support/Frames.h>
#include <fuzz/support/Reading.h>
#include <hostkit/Decode.h>
#include <hostkit/Encode.h>

using namespace poker;
using namespace poker::fuzz;

namespace {

using Kind = DecodeError::Kind;

constexpr std::uint32_t kLength = sizeof(std::uint32_t);

DecodeResult decodeMeasured(std::span<const std::uint8_t> command, const DecodePolicy& policy) {
  const MemoryBound bound(command.size() + kLength);
  return decodeCommand(command, policy);
}

void checkError(const DecodeError& error, const CommandClass* named, std::size_t size, const DecodePolicy& policy) {
  require(error.offset + error.remaining == size, "an error tells its place");
  switch (error.kind) {
    case Kind::NoFrame:
      return require(size < 2, "two bytes are a frame");
    case Kind::UnknownPair:
      return require(size >= 2 && named == nullptr, "a known pair is known");
    case Kind::NotFromNetwork:
      return require(named != nullptr && !named->travels, "what travels is taken");
    case Kind::TrailingBytes:
      return require(policy.rejectTrailing && error.remaining != 0,
                     "trailing bytes are there, and refused by a server");
    case Kind::Malformed:
      require(named != nullptr && error.className == named->name() && error.offset >= 2, "an error names its class");
      return require(isReadMessage(error.message), "an error has one of the fixed messages");
    default:
      violated("another error than a frame can have: " + error.toString());
  }
}

void checkCommand(const CommandClass& named, PokerCommandI& command) {
  static SerializeCommandBuf buffer(4096);
  static Bytes first;
  require(named.fitsOnWire(command), "what was read fits on the wire");
  const auto frame = encodeCommand(command, buffer);
  first.assign(frame.begin(), frame.end());
  require(wire::loadLittleEndian<std::uint32_t>(first.data()) == first.size(),
          "the length slot tells the frame's length");
  const bool tellsTime = named.name() == "SrvPing";  // takes the time when it is written
  const std::uint64_t held = digestOf(command);

  const DecodePolicy strict{.receives = named.direction(), .rejectTrailing = true, .wipeSecrets = false};
  const DecodeResult again = decodeMeasured(std::span(first).subspan(kLength), strict);
  require(static_cast<bool>(again), "what was written can be read");
  require(tellsTime || digestOf(*again.command) == held, "what was written reads back as the same values");
  const auto second = encodeCommand(*again.command, buffer);
  require(tellsTime || std::equal(first.begin(), first.end(), second.begin(), second.end()),
          "the same values are written as the same bytes");
}

}  // namespace

std::vector<Bytes> fuzz::seeds() { return goldenCommands(); }
void fuzz::mutate(Bytes& input, Random& random) { mutateCommand(input, random); }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::span<const std::uint8_t> command(data, size);
  const CommandClass* named = classOf(command);
  const bool toServer = named == nullptr || named->direction() == CommandDirection::ClientToServer;
  const auto policy = DecodePolicy::of(toServer ? Side::Server : Side::Client);
  const DecodeResult result = decodeMeasured(command, policy);
  if (result) {
    checkCommand(*named, *result.command);
  } else {
    checkError(result.error, named, size, policy);
  }
  if (named != nullptr) {
    const DecodeResult other = decodeCommand(command, DecodePolicy::of(toServer ? Side::Client : Side::Server));
    require(other.error.kind == Kind::WrongDirection, "the other side takes only its own");
  }
  return 0;
}
