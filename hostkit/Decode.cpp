#include <hostkit/Decode.h>

#include <CommandProcessor/wire/CommandDeserializeException.h>
#include <CommandProcessor/wire/DeserializeCommandBuf.h>

#include <memory>
#include <new>
#include <stdexcept>
#include <string>

namespace poker {
namespace {

constexpr std::uint32_t kFrameBytes = 2;  // type code, family

DecodeError outOfMemory(DecodeError error) noexcept {
  error.kind = DecodeError::Kind::OutOfMemory;
  error.message.assign("out of memory");  // short enough to stand inside the string
  return error;
}

}  // namespace

std::string_view toText(DecodeError::Kind kind) {
  switch (kind) {
    case DecodeError::Kind::None:
      return "None";
    case DecodeError::Kind::LengthBelowMinimum:
      return "LengthBelowMinimum";
    case DecodeError::Kind::LengthAboveLimit:
      return "LengthAboveLimit";
    case DecodeError::Kind::NoFrame:
      return "NoFrame";
    case DecodeError::Kind::UnknownPair:
      return "UnknownPair";
    case DecodeError::Kind::NotBuilt:
      return "NotBuilt";
    case DecodeError::Kind::WrongDirection:
      return "WrongDirection";
    case DecodeError::Kind::NotFromNetwork:
      return "NotFromNetwork";
    case DecodeError::Kind::NotAllowed:
      return "NotAllowed";
    case DecodeError::Kind::Malformed:
      return "Malformed";
    case DecodeError::Kind::TrailingBytes:
      return "TrailingBytes";
    case DecodeError::Kind::BadBatch:
      return "BadBatch";
    case DecodeError::Kind::OutOfMemory:
      return "OutOfMemory";
  }
  return "unknown";
}

std::string DecodeError::toString() const {
  if (kind == Kind::None) return {};
  if (kind == Kind::LengthBelowMinimum || kind == Kind::LengthAboveLimit || kind == Kind::NoFrame) return message;
  std::string text(className);
  if (!text.empty()) text += ' ';
  text += '(' + std::to_string(family) + ", " + std::to_string(code) + "): " + message;
  if (kind == Kind::BadBatch) return text;
  return text + ", at " + std::to_string(offset) + ", " + std::to_string(remaining) + " left";
}

const CommandClass* resolveCommand(std::span<const std::uint8_t> command, const DecodePolicy& policy,
                                   DecodeError& error) {
  const auto fail = [&](DecodeError::Kind kind, const char* message) {
    error.kind = kind;
    error.message = message;
    return nullptr;
  };
  error.remaining = static_cast<std::uint32_t>(command.size());
  if (command.size() < kFrameBytes) return fail(DecodeError::Kind::NoFrame, "fewer bytes than type code and family");
  error.code = command[0];
  error.family = command[1];
  const CommandClass* found = CommandFactory::find(static_cast<ProcessorFamily>(error.family), error.code);
  if (found == nullptr) return fail(DecodeError::Kind::UnknownPair, "names no command");
  error.className = found->name();
  if (found->direction() != policy.receives) {
    return fail(DecodeError::Kind::WrongDirection, policy.receives == CommandDirection::ClientToServer
                                                       ? "travels from server to client"
                                                       : "travels from client to server");
  }
  if (!found->travels) return fail(DecodeError::Kind::NotFromNetwork, "is never taken from the network");
  if (found->create == nullptr) return fail(DecodeError::Kind::NotBuilt, "is not part of this build");
  error.offset = kFrameBytes;
  error.remaining -= kFrameBytes;
  return found;
}

DecodeResult decodeCommand(std::span<const std::uint8_t> command, const DecodePolicy& policy) noexcept {
  DecodeError error;
  try {
    const CommandClass* named = resolveCommand(command, policy, error);
    if (named != nullptr) return decodeCommand(*named, command, policy);
    return error;
  } catch (const std::bad_alloc&) {  // the message's
    return outOfMemory(std::move(error));
  }
}

DecodeResult decodeCommand(const CommandClass& named, std::span<const std::uint8_t> command,
                           const DecodePolicy& policy) noexcept {
  DeserializeCommandBuf buffer(command.data() + kFrameBytes, static_cast<std::uint32_t>(command.size()) - kFrameBytes);
  const auto errorHere = [&](DecodeError::Kind kind) {
    DecodeError error;
    error.kind = kind;
    error.family = static_cast<std::uint8_t>(named.family());
    error.code = named.code();
    error.className = named.name();
    error.offset = kFrameBytes + buffer.position();
    error.remaining = buffer.remaining();
    return error;
  };
  try {
    CommandHandle<> decoded(named.create(), policy.wipeSecrets ? named.wipeSecrets : nullptr);
    try {
      decoded->deserialize(buffer);
    } catch (CommandDeserializeException* thrown) {
      const std::unique_ptr<CommandDeserializeException> owner(thrown);
      DecodeError error = errorHere(DecodeError::Kind::Malformed);
      error.message = owner->message();
      return error;
    }
    if (policy.rejectTrailing && buffer.remaining() != 0) {
      DecodeError error = errorHere(DecodeError::Kind::TrailingBytes);
      error.message = "has bytes behind its last field";
      return error;
    }
    return decoded;
  } catch (const std::bad_alloc&) {
    return outOfMemory(errorHere(DecodeError::Kind::OutOfMemory));
  } catch (const std::length_error&) {  // what a standard container says to a size that no memory could hold
    return outOfMemory(errorHere(DecodeError::Kind::OutOfMemory));
  }
}

}  // namespace poker
