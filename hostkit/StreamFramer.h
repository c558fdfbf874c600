#pragma once

#include <CommandProcessor/core/ProcessorFamily.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace poker {

/// The bytes of the length slot in front of a frame.
inline constexpr std::uint32_t kLengthSlot = 4;
/// The shortest frame: length slot, type code, family.
inline constexpr std::uint32_t kShortestFrame = kLengthSlot + 2;

/// How long a frame may be, its length slot included, before anything of it is buffered.
struct FrameLimits {
  std::uint32_t beforeLogon = 4 * 1024;
  std::uint32_t afterLogon = 64 * 1024;
  /// The one class with a limit of its own after logon: ClUpdateUserPic (6, 122), a picture of up to 65,535 bytes
  /// behind its 16-bit size.
  std::uint32_t picture = kShortestFrame + 2 + 65535;
};

/// One whole frame, in the buffer of the framer that found it: valid until that framer's next operation.
struct Frame {
  std::span<const std::uint8_t> bytes;  ///< with the length slot, as they travelled

  /// Type code, family and fields: what decodeCommand() takes.
  std::span<const std::uint8_t> command() const { return bytes.subspan(kLengthSlot); }
};

/// Why a stream cannot be read on. There is no way back into step: the connection has to end.
struct FramingError {
  enum class Kind : std::uint8_t { None, LengthBelowMinimum, LengthAboveLimit };

  Kind kind = Kind::None;
  std::uint32_t length = 0;  ///< what the length slot says
  std::uint32_t limit = 0;   ///< what it was held against

  /// For example "a frame of 70000 bytes is above the limit of 65536".
  std::string message() const;
};

/// Cuts a byte stream into frames: length slot (32 bits, little-endian, itself included), type code, family, fields.
///
/// Bytes come as they please, split anywhere or many frames at once, straight into the framer's one buffer:
///
///     auto space = framer.prepare();                                   // receive into it
///     framer.commit(received);
///     Frame frame;
///     while (framer.next(frame) == StreamFramer::Result::Frame) use(frame);
///
/// A length is judged as soon as its bytes are there, before memory is set aside for what it promises. The buffer grows
/// with the bytes that really came, up to the limit, and is kept; each byte is moved a bounded number of times.
/// One thread at a time.
class StreamFramer {
 public:
  enum class Result : std::uint8_t { NeedMore, Frame, Error };

  explicit StreamFramer(const FrameLimits& limits = {});
  StreamFramer(const StreamFramer&) = delete;
  StreamFramer& operator=(const StreamFramer&) = delete;
  ~StreamFramer();

  /// Whether the limits of after the logon hold, the picture's own one with them. False at first.
  void setLoggedOn(bool loggedOn) { loggedOn_ = loggedOn; }
  void setLimits(const FrameLimits& limits) { limits_ = limits; }
  /// Overwrites the bytes of each frame when the next one is asked for, since they may hold a password. Off at first.
  void setWiping(bool wiping) { wiping_ = wiping; }

  /// Where to receive the next bytes. Ends the life of the last frame. Not empty after next() has said NeedMore.
  /// @throws std::bad_alloc  nothing has changed then
  std::span<std::uint8_t> prepare();
  /// Says how many bytes were received into the front of the last prepare()'s space.
  void commit(std::size_t received);
  /// Both at once, for bytes that lie elsewhere. Takes what there is room for; next() makes room for more.
  /// @return how many were taken
  std::size_t feed(std::span<const std::uint8_t> bytes);

  /// The next whole frame, or why there is none. After an Error every further call returns it again.
  Result next(Frame& frame);
  const FramingError& error() const { return error_; }

  /// Whether a frame has begun whose end has not come, as far as next() has looked.
  bool hasPartial() const { return end_ != begin_ + frameLength_; }
  /// The frames that next() has returned since construction.
  std::uint64_t frames() const { return frames_; }
  /// Bytes held and not consumed.
  std::size_t buffered() const { return end_ - begin_; }
  /// Those that follow the last frame: the beginning of the next one, after NeedMore or an Error. Valid until the
  /// framer's next operation.
  std::span<const std::uint8_t> partial() const {
    return {buffer_.get() + begin_ + frameLength_, end_ - begin_ - frameLength_};
  }
  /// Bytes set aside.
  std::size_t capacity() const { return capacity_; }
  /// Forgets all bytes and any error.
  void reset();

 private:
  std::uint32_t limitOf(std::uint8_t code, std::uint8_t family) const;
  std::uint32_t longestLimit() const;
  void consume();
  void move(std::size_t capacity);

  FrameLimits limits_;
  bool loggedOn_ = false;
  bool wiping_ = false;
  std::unique_ptr<std::uint8_t[]> buffer_;
  std::size_t capacity_ = 0;
  std::size_t begin_ = 0;          // of the frame that comes next, or that was returned last
  std::size_t end_ = 0;            // of the received bytes
  std::uint32_t frameLength_ = 0;  // of the frame that was returned last and still lies at begin_
  std::uint64_t frames_ = 0;
  FramingError error_;
};

}  // namespace poker
