#pragma once

#include <CommandProcessor/core/PokerCommandI.h>
#include <CommandProcessor/wire/SerializeCommandBuf.h>

#include <cstdint>
#include <span>
#include <stdexcept>

namespace poker {

/// A command cannot be sent: it holds more than its counts can tell, and its receiver would lose its place. The host's
/// own mistake, so it is thrown.
class EncodeError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Writes a command as one whole frame, length slot included, into a buffer that is reused from call to call.
/// @return the finished bytes, which the buffer keeps until it is written again
/// @throws EncodeError     for example "SrvStringMapCommand holds more than its counts can tell"
/// @throws std::bad_alloc
std::span<const std::uint8_t> encodeCommand(const PokerCommandI& command, SerializeCommandBuf& buffer);

}  // namespace poker
