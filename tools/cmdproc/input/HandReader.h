#pragma once

#include <hostkit/Decode.h>
#include <inspect/hands/HandRecorder.h>
#include <tools/cmdproc/Program.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace poker::cmdproc {

/// Reads the commands of frames, those inside of batches too, and gives a recorder of hands those that it wants.
class HandReader {
 public:
  /// @param recorder  must outlive the reader
  explicit HandReader(HandRecorder& recorder) : recorder_(recorder) {}

  /// @return what is wrong with the frame; empty when nothing is
  std::string take(const CapturedFrame& frame);

  /// How many commands were read, those of no interest too.
  std::uint64_t commands() const { return commands_; }

 private:
  std::string takeBatch(const CapturedFrame& frame);

  HandRecorder& recorder_;
  std::vector<std::uint8_t> batch_;
  std::uint64_t commands_ = 0;
};

}  // namespace poker::cmdproc
