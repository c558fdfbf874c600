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

std::string failureText(const CapturedFrame& frame, const DecodeError& error) {
  std::string text = "offset " + std::to_string(frame.offset) + ": ";
  if (error.className.empty()) {
    return text + "family " + std::to_string(error.family) + ", code " + std::to_string(error.code) + ": " +
           error.message;
  }
  text.append(error.className) += ": " + error.message;
  const auto failure =
      walkCommand(*CommandSchema::find(error.className), frame.bytes.subspan(kLengthSlot), [](const WirePiece&) {});
  if (!failure) return text;
  text += " (";
  if (!failure->path.empty()) text += failure->path + ' ';
  return text + "at byte " + std::to_string(frame.offset + kLengthSlot + failure->offset) + ": " + failure->problem +
         ')';
}

std::string failureText(const CapturedFrame& frame) {
  return "offset " + std::to_string(frame.offset) + ": " + std::string(frame.problem);
}

}  // namespace poker::cmdproc
