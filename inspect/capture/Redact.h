#pragma once

#include <cstdint>
#include <span>

namespace poker {

/// Overwrites the secrets in a frame (passwords, PINs, card numbers, the bytes of the secure channel) with '*': their
/// lengths stay, and so does everything else. What cannot be read is not to be trusted: of a frame of a class with
/// secrets that cannot be read to its end, everything is overwritten from its first text on, for what is wrong may have
/// moved a secret to another field. A frame that names no class stays as it is, and so does a batch, whose inside must
/// be treated before it is compressed. Any thread.
/// @param frame  with its length slot, which need not be right
void redactSecrets(std::span<std::uint8_t> frame);

}  // namespace poker
