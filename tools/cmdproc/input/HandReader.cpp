#include <hostkit/Batch.h>
#include <hostkit/StreamFramer.h>
#include <tools/cmdproc/input/DecodeFrame.h>
#include <tools/cmdproc/input/HandReader.h>

#include <span>

namespace poker::cmdproc {

std::string HandReader::take(const CapturedFrame& frame) {
  if (!frame.problem.empty()) {
    recorder_.lose(frame.connection);
    return failureText(frame);
  }
  if (isBatch(frame.bytes)) return takeBatch(frame);
  ++commands_;
  const std::uint8_t code = frame.bytes[kLengthSlot];
  const auto family = static_cast<ProcessorFamily>(frame.bytes[kLengthSlot + 1]);
  if (!HandRecorder::wants(family, code)) return {};
  const DecodeResult decoded = decodeFrame(frame.bytes);
  if (!decoded) {
    recorder_.lose(frame.connection);
    return failureText(frame, decoded.error);
  }
  recorder_.take(frame, *decoded.command);
  return {};
}

std::string HandReader::takeBatch(const CapturedFrame& frame) {
  const DecodeResult decoded = decodeFrame(frame.bytes);
  std::string_view problem;
  if (decoded) problem = unpackBatch(static_cast<SrvCompressedCommands&>(*decoded.command), batch_);
  if (!decoded || !problem.empty()) {
    recorder_.lose(frame.connection);
    if (!decoded) return failureText(frame, decoded.error);
    CapturedFrame bad = frame;
    bad.problem = problem;
    return failureText(bad);
  }
  std::span<const std::uint8_t> rest = batch_;
  while (!rest.empty()) {
    CapturedFrame inner = frame;
    inner.bytes = takeFrame(rest);
    // Frames of one batch are read as well as they can be.
    if (std::string text = take(inner); !text.empty()) return text;
  }
  return {};
}

}  // namespace poker::cmdproc
