#pragma once

#include <hostkit/Batch.h>
#include <hostkit/CommandHandle.h>
#include <inspect/capture/CapturedFrame.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace poker::cmdproc {

/// What is inside a batch, frame by frame. One object serves any number of batches, and keeps its memory.
class BatchContent {
 public:
  /// Inflates the batch, which loses its body.
  /// @return what is wrong with it, a constant text; empty when nothing is
  std::string_view open(SrvCompressedCommands& batch) {
    const std::string_view problem = unpackBatch(batch, bytes_);
    rest_ = problem.empty() ? std::span<const std::uint8_t>(bytes_) : std::span<const std::uint8_t>();
    offset_ = 0;
    return problem;
  }

  /// The next frame inside, with its offset among the inflated bytes.
  /// @return false at the end
  bool next(CapturedFrame& frame) {
    if (rest_.empty()) return false;
    frame = {.bytes = takeFrame(rest_), .offset = offset_};
    offset_ += frame.bytes.size();
    return true;
  }

 private:
  std::vector<std::uint8_t> bytes_;
  std::span<const std::uint8_t> rest_;
  std::uint64_t offset_ = 0;
};

/// The command as a batch; null when it is another one.
SrvCompressedCommands* asBatch(PokerCommandI& command);

}  // namespace poker::cmdproc
