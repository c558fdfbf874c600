#include <hostkit/StreamFramer.h>

#include <CommandProcessor/wire/WireNumber.h>

#include <algorithm>
#include <cstring>
#include <string>

// frame  = length (32 bits, little-endian: all bytes of the frame), type code (8), family (8), fields
// stream = frame, frame, ...

namespace poker {
namespace {

constexpr std::size_t kFirstCapacity = 4096;

constexpr auto kPictureFamily = static_cast<std::uint8_t>(ProcessorFamily::ClientMisc);
constexpr std::uint8_t kPictureCode = 122;

}  // namespace

std::string FramingError::message() const {
  const std::string text = "a frame of " + std::to_string(length) + " bytes is ";
  switch (kind) {
    case Kind::LengthBelowMinimum:
      return text + "below the minimum of " + std::to_string(limit);
    case Kind::LengthAboveLimit:
      return text + "above the limit of " + std::to_string(limit);
    case Kind::None:
      break;
  }
  return {};
}

StreamFramer::StreamFramer(const FrameLimits& limits) : limits_(limits) {}

StreamFramer::~StreamFramer() {
  if (wiping_) reset();
}

std::uint32_t StreamFramer::limitOf(std::uint8_t code, std::uint8_t family) const {
  if (!loggedOn_) return limits_.beforeLogon;
  return code == kPictureCode && family == kPictureFamily ? limits_.picture : limits_.afterLogon;
}

std::uint32_t StreamFramer::longestLimit() const {
  return loggedOn_ ? std::max(limits_.afterLogon, limits_.picture) : limits_.beforeLogon;
}

void StreamFramer::consume() {
  if (frameLength_ == 0) return;
  if (wiping_) std::memset(buffer_.get() + begin_, 0, frameLength_);
  begin_ += frameLength_;
  frameLength_ = 0;
  if (begin_ == end_) begin_ = end_ = 0;
}

// Brings what is held to the front of a buffer of the given capacity, which may be the present one.
void StreamFramer::move(std::size_t capacity) {
  const std::size_t held = buffered();
  if (capacity == capacity_) {
    std::memmove(buffer_.get(), buffer_.get() + begin_, held);
    if (wiping_) std::memset(buffer_.get() + held, 0, end_ - held);
  } else {
    auto larger = std::make_unique_for_overwrite<std::uint8_t[]>(capacity);
    if (held != 0) std::memcpy(larger.get(), buffer_.get() + begin_, held);
    if (wiping_ && capacity_ != 0) std::memset(buffer_.get(), 0, end_);
    buffer_ = std::move(larger);
    capacity_ = capacity;
  }
  begin_ = 0;
  end_ = held;
}

std::span<std::uint8_t> StreamFramer::prepare() {
  consume();
  if (error_.kind != FramingError::Kind::None) return {};
  const std::size_t bound = std::max(longestLimit(), kShortestFrame);
  if (capacity_ == 0) move(std::min(kFirstCapacity, bound));

  const std::size_t held = buffered();
  const std::size_t wanted =
      held < kLengthSlot ? kShortestFrame : wire::loadLittleEndian<std::uint32_t>(buffer_.get() + begin_);
  // To the front when the frame has no room where it stands (so at most once a frame), or when little room is left for
  // the next read and no more bytes are to be moved than were consumed before them.
  const bool noRoom = wanted > capacity_ - begin_;
  const bool littleRoom = capacity_ - end_ < capacity_ / 4 && held <= begin_;
  if (begin_ != 0 && (noRoom || littleRoom)) move(capacity_);
  if (begin_ == 0 && end_ == capacity_ && capacity_ < bound) move(std::min(bound, capacity_ * 2));
  return {buffer_.get() + end_, capacity_ - end_};
}

void StreamFramer::commit(std::size_t received) { end_ += std::min(received, capacity_ - end_); }

std::size_t StreamFramer::feed(std::span<const std::uint8_t> bytes) {
  const std::span<std::uint8_t> space = prepare();
  const std::size_t count = std::min(space.size(), bytes.size());
  if (count != 0) std::memcpy(space.data(), bytes.data(), count);
  commit(count);
  return count;
}

StreamFramer::Result StreamFramer::next(Frame& frame) {
  if (error_.kind != FramingError::Kind::None) return Result::Error;
  consume();
  const std::size_t held = buffered();
  if (held < kLengthSlot) return Result::NeedMore;

  const std::uint8_t* bytes = buffer_.get() + begin_;
  const auto length = wire::loadLittleEndian<std::uint32_t>(bytes);
  if (length < kShortestFrame) {
    error_ = {FramingError::Kind::LengthBelowMinimum, length, kShortestFrame};
    return Result::Error;
  }
  // Until the class is known the longest limit of all holds, and then the class's own.
  const bool known = held >= kShortestFrame;
  const std::uint32_t limit = known ? limitOf(bytes[kLengthSlot], bytes[kLengthSlot + 1]) : longestLimit();
  if (length > limit) {
    error_ = {FramingError::Kind::LengthAboveLimit, length, limit};
    return Result::Error;
  }
  if (held < length) return Result::NeedMore;
  frameLength_ = length;
  ++frames_;
  frame.bytes = {bytes, length};
  return Result::Frame;
}

void StreamFramer::reset() {
  if (wiping_ && capacity_ != 0) std::memset(buffer_.get(), 0, end_);
  begin_ = end_ = 0;
  frameLength_ = 0;
  error_ = {};
}

}  // namespace poker
