#pragma once

#include <cstdint>

namespace poker {

/// What a handshake record of the secure channel is. The code that makes and reads the records chooses the values; this
/// library only carries them.
enum class SSLDataType : std::uint8_t {};

}  // namespace poker
