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
  /// More than any host sends or takes; what inflates to more is not looked into.
  static constexpr std::uint32_t kMost = 64 * 1024 * 1024;

  /// Inflates the batch, which loses its body.
  /// @return what is wrong with it, a constant text; empty when nothing is
  std::string_view open(SrvCompressedCommands& batch) {
    const std::string_view problem = unpackBatch(batch, bytes_, kMost);
    rest_ = problem.empty() ? std::span<const std::uint8_t>(bytes_) : std::span<const std::uint8_t>();
    offset_ = 0;
    return problem;
  }

  /// Whether a command inside has secrets among its fields.
  bool hasSecrets() const;

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
