#include <tools/cmdproc/input/StreamInput.h>

namespace poker::cmdproc {

StreamInput::StreamInput(std::unique_ptr<ByteSource> bytes, std::uint32_t longestFrame)
    : bytes_(std::move(bytes)),
      framer_({.beforeLogon = longestFrame, .afterLogon = longestFrame, .picture = longestFrame}) {}

bool StreamInput::next(CapturedFrame& frame) {
  if (ended_) return false;
  Frame found;
  for (;;) {
    switch (framer_.next(found)) {
      case StreamFramer::Result::Frame:
        frame = {.bytes = found.bytes, .number = ++number_, .offset = offset_};
        offset_ += found.bytes.size();
        return true;
      case StreamFramer::Result::Error:
        problem_ = framer_.error().message();
        return end(frame);
      case StreamFramer::Result::NeedMore:
        break;
    }
    const std::size_t received = bytes_->read(framer_.prepare());
    framer_.commit(received);
    if (received != 0) continue;
    problem_ = bytes_->problem();
    if (problem_.empty() && framer_.buffered() != 0) {
      problem_ = "the stream ends within a frame, after " + std::to_string(framer_.buffered()) + " bytes of it";
    }
    return end(frame);
  }
}

bool StreamInput::end(CapturedFrame& frame) {
  ended_ = true;
  // What follows a length that is none is anything but a frame.
  const bool cut = framer_.error().kind == FramingError::Kind::None;
  frame = {.bytes = cut ? framer_.partial() : std::span<const std::uint8_t>(),
           .number = ++number_,
           .offset = offset_,
           .problem = problem_};
  return !problem_.empty();
}

}  // namespace poker::cmdproc
