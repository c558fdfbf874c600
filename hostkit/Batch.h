#pragma once

#include <CommandProcessor/wire/SerializeCommandBuf.h>
#include <CommandProcessor/wire/SrvCompressedCommands.h>

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace poker {

/// No batch holds more than so many bytes of frames.
inline constexpr std::uint32_t kLargestBatch = 1024 * 1024;

/// What the command says of itself: whether it may travel in a batch.
bool mayCompress(const PokerCommandI& command);

/// Whether a frame is a batch; the frame is a whole one, length slot included.
bool isBatch(std::span<const std::uint8_t> frame);

/// Compresses whole frames into one batch.
/// @param frames  none of them a batch
/// @return the batch's frame, in `buffer`; empty when it would be no smaller than the frames, or they are more than
///         kLargestBatch
/// @throws std::bad_alloc
std::span<const std::uint8_t> packBatch(std::span<const std::uint8_t> frames, SerializeCommandBuf& buffer);

/// Inflates a received batch, whose sizes and body are the peer's. Sizes that no honest body has are refused before
/// memory is set aside; afterwards zlib must be content, the size the announced one, and the bytes whole frames, none
/// of them a batch.
/// @param frames  then holds them; its memory is used again
/// @param most    no more than so many bytes are inflated
/// @return what is wrong, a constant text; empty when nothing is
/// @throws std::bad_alloc
std::string_view unpackBatch(SrvCompressedCommands& batch, std::vector<std::uint8_t>& frames,
                             std::uint32_t most = kLargestBatch);

/// Takes the first frame off unpacked ones.
std::span<const std::uint8_t> takeFrame(std::span<const std::uint8_t>& frames);

}  // namespace poker
