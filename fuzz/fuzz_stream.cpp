// A stream of frames, cut as it pleases: the framer finds the same frames whatever the cuts, and those of a model.
// An input is two bytes (the session, and where the cuts are) and then the stream.

#include <CommandProcessor/wire/WireNumber.h>
#include <fuzz/support/Frames.h>
#include <hostkit/StreamFramer.h>

#include <algorithm>

using namespace poker;
using namespace poker::fuzz;

namespace {

using Result = StreamFramer::Result;
using Error = FramingError::Kind;

constexpr std::size_t kHead = 2;
constexpr FrameLimits kLimits{.beforeLogon = 64, .afterLogon = 300, .picture = 700};

/// What a stream holds.
struct Found {
  std::size_t frames = 0;
  std::size_t end = 0;  // of the last whole frame
  Error error = Error::None;

  friend bool operator==(const Found&, const Found&) = default;
};

std::uint32_t longest(bool loggedOn) { return loggedOn ? kLimits.picture : kLimits.beforeLogon; }

Found modelOf(std::span<const std::uint8_t> stream, bool loggedOn) {
  Found found;
  for (;;) {
    const auto rest = stream.subspan(found.end);
    if (rest.size() < kLengthSlot) return found;
    const auto length = wire::loadLittleEndian<std::uint32_t>(rest.data());
    std::uint32_t limit = longest(loggedOn);
    if (loggedOn && rest.size() >= kShortestFrame && (rest[4] != 122 || rest[5] != 6)) limit = kLimits.afterLogon;
    if (length < kShortestFrame) found.error = Error::LengthBelowMinimum;
    if (length > limit) found.error = Error::LengthAboveLimit;
    if (found.error != Error::None || rest.size() < length) return found;
    found.end += length;
    ++found.frames;
  }
}

/// Feeds the stream in parts of the sizes that `size` gives.
template <class Size>
void check(std::span<const std::uint8_t> stream, bool loggedOn, bool wiping, const Found& expected, Size&& size) {
  StreamFramer framer(kLimits);
  framer.setLoggedOn(loggedOn);
  framer.setWiping(wiping);
  Found found;
  std::size_t fed = 0;
  Result result = Result::NeedMore;
  for (;;) {
    Frame frame;
    while ((result = framer.next(frame)) == Result::Frame) {
      const auto here = stream.subspan(found.end, frame.bytes.size());
      require(std::equal(here.begin(), here.end(), frame.bytes.begin()), "a frame holds the stream's bytes");
      found.end += frame.bytes.size();
      ++found.frames;
      require(framer.frames() == found.frames, "frames are counted");
    }
    require(framer.buffered() == fed - found.end, "what is no frame yet is kept");
    require(framer.hasPartial() == (fed != found.end), "the beginning of a frame is known as one");
    if (result == Result::Error || fed == stream.size()) break;
    const auto part = stream.subspan(fed, std::min(stream.size() - fed, std::size_t{1} + size()));
    const std::size_t taken = framer.feed(part);
    require(taken != 0, "there is room after the framer has asked for more");
    fed += taken;
    require(framer.capacity() <= longest(loggedOn), "no more memory is set aside than the longest frame needs");
  }
  const FramingError& error = framer.error();
  found.error = error.kind;
  require(result == (found.error == Error::None ? Result::NeedMore : Result::Error), "an error is told as one");
  require(error.message().empty() == (error.kind == Error::None), "an error has a message");
  require(found == expected, "the frames and the error are those of the stream, whatever the cuts");
}

}  // namespace

std::vector<Bytes> fuzz::seeds() {
  std::vector<Bytes> made;
  for (std::uint8_t session = 0; session < 4; ++session) {
    Bytes& stream = made.emplace_back(Bytes{session, session});
    for (const Bytes& command : goldenCommands()) {
      if (stream.size() > 250) break;
      if (command.size() < 60) appendFrame(stream, command);
    }
  }
  Bytes picture(300, 122);
  picture[1] = 6;
  appendFrame(made.emplace_back(Bytes{1, 9}), picture);
  return made;
}

void fuzz::mutate(Bytes& input, Random& random) {
  // To some frame of the stream, or its end.
  std::size_t at = kHead;
  while (input.size() > at + kLengthSlot && !random.oneIn(4)) {
    const auto length = wire::loadLittleEndian<std::uint32_t>(&input[at]);
    if (length < kShortestFrame || length > input.size() - at) break;
    at += length;
  }
  if (input.size() < at + kLengthSlot || random.oneIn(3)) return mutateBytes(input, random);
  if (random.oneIn(3)) {
    Bytes frame;
    appendFrame(frame, Bytes(2 + random.below(random.oneIn(8) ? 700 : 60), random.oneIn(4) ? 122 : random.byte()));
    if (frame[4] == 122) frame[5] = 6;
    input.insert(input.begin() + static_cast<std::ptrdiff_t>(at), frame.begin(), frame.end());
    return;
  }
  const std::uint32_t limits[] = {kLimits.beforeLogon, kLimits.afterLogon, kLimits.picture, kShortestFrame};
  const std::uint64_t length = random.oneIn(2) ? limits[random.below(4)] + random.below(3) - 1
                                               : edge(input.size() - at, input.size() - at, random);
  wire::storeLittleEndian(&input[at], static_cast<std::uint32_t>(length));
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < kHead) return 0;
  const bool loggedOn = (data[0] & 1) != 0, wiping = (data[0] & 2) != 0;
  const std::span<const std::uint8_t> stream(data + kHead, size - kHead);
  const Found expected = modelOf(stream, loggedOn);
  Random cuts(data[1]);
  check(stream, loggedOn, wiping, expected, [&] { return stream.size(); });
  check(stream, loggedOn, wiping, expected, [&] { return cuts.below(90); });
  if (data[1] % 8 == 0) check(stream, loggedOn, wiping, expected, [] { return std::size_t{0}; });  // byte by byte
  return 0;
}
