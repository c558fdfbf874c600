#include <gtest/gtest.h>
#include <hostkit/StreamFramer.h>

#include <algorithm>
#include <span>
#include <vector>

#include "HostKitUse.h"

namespace poker::test {
namespace {

// That frames and errors are those of the stream wherever it is cut, its fuzz target says (fuzz/fuzz_stream.cpp).

Bytes rawFrame(std::uint32_t length, std::uint8_t code = 128, std::uint8_t family = 2) {
  Bytes bytes(std::max<std::uint32_t>(length, 6), 0xA5);
  for (std::size_t i = 0; i < 4; ++i) bytes[i] = static_cast<std::uint8_t>(length >> 8 * i);
  bytes[4] = code;
  bytes[5] = family;
  return bytes;
}

/// Feeds all bytes, `portion` at a time, and takes out what comes.
std::vector<Bytes> cut(StreamFramer& framer, std::span<const std::uint8_t> bytes, std::size_t portion) {
  std::vector<Bytes> frames;
  while (!bytes.empty()) {
    const std::size_t taken = framer.feed(bytes.first(std::min(portion, bytes.size())));
    bytes = bytes.subspan(taken);
    Frame frame;
    StreamFramer::Result result;
    while ((result = framer.next(frame)) == StreamFramer::Result::Frame) {
      frames.emplace_back(frame.bytes.begin(), frame.bytes.end());
    }
    if (result == StreamFramer::Result::Error || taken == 0) break;
  }
  return frames;
}

TEST(Framer, JudgesALengthBeforeItBuffersWhatTheLengthPromises) {
  struct Case {
    std::uint32_t length;
    bool loggedOn;
    FramingError::Kind kind;
    std::uint32_t limit;
  };
  std::vector<Case> cases = {{4097, false, FramingError::Kind::LengthAboveLimit, 4096},
                             {0xFFFFFFFF, false, FramingError::Kind::LengthAboveLimit, 4096},
                             {0x80000000, true, FramingError::Kind::LengthAboveLimit, 65543}};
  for (std::uint32_t length = 0; length < 6; ++length) {
    cases.push_back({length, false, FramingError::Kind::LengthBelowMinimum, 6});
  }
  for (const Case& test : cases) {
    StreamFramer framer;
    framer.setLoggedOn(test.loggedOn);
    Bytes slot(4);  // the length alone: code and family have not come
    for (std::size_t i = 0; i < 4; ++i) slot[i] = static_cast<std::uint8_t>(test.length >> 8 * i);
    EXPECT_TRUE(cut(framer, slot, 4).empty());
    EXPECT_EQ(framer.error().kind, test.kind) << test.length;
    EXPECT_EQ(framer.error().length, test.length);
    EXPECT_EQ(framer.error().limit, test.limit);
    EXPECT_LE(framer.capacity(), 4096u);
    // There is no way back into step.
    EXPECT_TRUE(framer.prepare().empty());
    Frame frame;
    EXPECT_EQ(framer.next(frame), StreamFramer::Result::Error);
  }
  StreamFramer framer;
  cut(framer, rawFrame(5000), 4);
  EXPECT_EQ(framer.error().message(), "a frame of 5000 bytes is above the limit of 4096");
}

TEST(Framer, AcceptsExactlyUpToEachLimit) {
  const auto accepts = [](std::uint32_t length, bool loggedOn, std::uint8_t code, std::uint8_t family) {
    StreamFramer framer;
    framer.setLoggedOn(loggedOn);
    return cut(framer, rawFrame(length, code, family), 3000).size() == 1;
  };
  EXPECT_TRUE(accepts(4096, false, 116, 2));
  EXPECT_FALSE(accepts(4097, false, 116, 2));
  EXPECT_TRUE(accepts(65536, true, 108, 2));
  EXPECT_FALSE(accepts(65537, true, 108, 2));
  // The picture of 65,535 bytes, after logon only, and nothing else that shares its code or its family.
  EXPECT_TRUE(accepts(65543, true, 122, 6));
  EXPECT_FALSE(accepts(65544, true, 122, 6));
  EXPECT_FALSE(accepts(4097, false, 122, 6));
  EXPECT_FALSE(accepts(65543, true, 122, 2));
  EXPECT_FALSE(accepts(65543, true, 121, 6));
}

// With one byte left over from each read, a framer that moves its rest for each frame would copy without end.
TEST(Framer, WorkStaysInProportionToTheBytes) {
  StreamFramer framer;
  framer.setLoggedOn(true);
  Bytes stream;
  for (int i = 0; i < 200; ++i) {
    const Bytes two = rawFrame(6) + rawFrame(60000);
    stream.insert(stream.end(), two.begin(), two.end());
  }
  std::size_t prepared = 0;
  std::size_t frames = 0;
  for (std::span<const std::uint8_t> rest = stream; !rest.empty(); ++prepared) {
    rest = rest.subspan(framer.feed(rest));
    Frame frame;
    while (framer.next(frame) == StreamFramer::Result::Frame) ++frames;
  }
  EXPECT_EQ(frames, 400u);
  // 12 MB through a buffer of 64 KiB: each look for room finds a good part of the buffer free.
  EXPECT_LE(prepared, 4 * stream.size() / 65536 + 20);
}

TEST(Framer, WipesFramesThatWereTakenOut) {
  StreamFramer framer;
  framer.setWiping(true);
  const Bytes secret = rawFrame(100);
  framer.feed(secret + rawFrame(6));
  Frame first;
  ASSERT_EQ(framer.next(first), StreamFramer::Result::Frame);
  const std::span<const std::uint8_t> place = first.bytes;
  Frame second;
  ASSERT_EQ(framer.next(second), StreamFramer::Result::Frame);
  EXPECT_TRUE(std::all_of(place.begin(), place.end(), [](std::uint8_t byte) { return byte == 0; }));
  EXPECT_EQ(second.bytes.size(), 6u);
}

}  // namespace
}  // namespace poker::test
