#include <hostkit/CommandFactory.h>
#include <hostkit/StreamFramer.h>
#include <inspect/schema/WireWalk.h>
#include <tools/cmdproc/input/DecodeFrame.h>

namespace poker::cmdproc {

DecodeResult decodeFrame(std::span<const std::uint8_t> frame) {
  const auto command = frame.subspan(kLengthSlot);
  const CommandClass* named = CommandFactory::find(static_cast<ProcessorFamily>(command[1]), command[0]);
  DecodePolicy policy{.receives = CommandDirection::ServerToClient, .rejectTrailing = true, .wipeSecrets = false};
  if (named == nullptr) return decodeCommand(command, policy);  // says why
  policy.receives = named->direction();
  return decodeCommand(*named, command, policy);
}

namespace {

/// "CommandBuf::readNumber - bufSize == 0 (sequenceNumber at byte 126: takes 4 bytes, 3 are left)"
std::string readText(const CapturedFrame& frame, const DecodeError& error) {
  const auto failure =
      walkCommand(*CommandSchema::find(error.className), frame.bytes.subspan(kLengthSlot), [](const WirePiece&) {});
  if (!failure) return error.message;
  return error.message + " (" + (failure->path.empty() ? "" : failure->path + ' ') + "at byte " +
         std::to_string(frame.offset + kLengthSlot + failure->offset) + ": " + failure->problem + ')';
}

}  // namespace

std::string failureText(const CapturedFrame& frame, const DecodeError& error) {
  const std::string text = "offset " + std::to_string(frame.offset) + ": ";
  if (error.className.empty()) {
    return text + "family " + std::to_string(error.family) + ", code " + std::to_string(error.code) + ": " +
           error.message;
  }
  return text + std::string(error.className) + ": " + readText(frame, error);
}

std::string failureText(const CapturedFrame& frame) {
  const std::string text = "offset " + std::to_string(frame.offset) + ": ";
  const std::string problem(frame.problem);
  if (frame.bytes.size() < kShortestFrame) return text + problem;
  const DecodeResult decoded = decodeFrame(frame.bytes);
  if (decoded || decoded.error.className.empty()) return text + problem;
  return text + std::string(decoded.error.className) + ": " + problem + ": " + readText(frame, decoded.error);
}

}  // namespace poker::cmdproc
