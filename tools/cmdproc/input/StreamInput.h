#pragma once

#include <hostkit/StreamFramer.h>
#include <inspect/capture/CapturedFrame.h>
#include <tools/cmdproc/input/Bytes.h>

#include <memory>
#include <string>

namespace poker::cmdproc {

/// Cuts bytes that travelled in one direction into frames, in memory for one frame, whatever the length of the stream.
class StreamInput final : public FrameSource {
 public:
  /// @param longestFrame  a length slot above it is not believed
  StreamInput(std::unique_ptr<ByteSource> bytes, std::uint32_t longestFrame);

  /// A stream whose length slots cannot be followed any more ends with a frame that has a `problem`.
  bool next(CapturedFrame& frame) override;
  std::uint64_t position() const override { return bytes_->position(); }
  std::optional<std::uint64_t> size() const override { return bytes_->size(); }

 private:
  bool end(CapturedFrame& frame);

  std::unique_ptr<ByteSource> bytes_;
  StreamFramer framer_;
  std::uint64_t offset_ = 0;  // of the frame that comes next
  std::uint64_t number_ = 0;
  bool ended_ = false;
  std::string problem_;
};

}  // namespace poker::cmdproc
