#pragma once

#include <CommandProcessor/core/Catalogue.h>
#include <hostkit/CommandHandle.h>
#include <hostkit/Encode.h>

#include <cstdint>
#include <random>
#include <utility>
#include <vector>

namespace poker::holdem {

using Bytes = std::vector<std::uint8_t>;

/// What all passwords of a siege begin with: no log may have it.
inline constexpr const char* kSecret = "open-sesame";

inline Bytes frameOf(const PokerCommandI& command) {
  SerializeCommandBuf buffer(256);
  const auto frame = encodeCommand(command, buffer);
  return {frame.begin(), frame.end()};
}
/// The frame of a T that is filled with `init(args...)`.
template <class T, class... Args>
Bytes frame(Args&&... args) {
  return frameOf(*make<T>(std::forward<Args>(args)...));
}
/// What a length slot says, and bytes behind it.
Bytes rawFrame(std::uint32_t length, const Bytes& rest);

/// A whole frame of every class of one direction, with random fields: what the catalogue grows by is in it by itself.
std::vector<Bytes> catalogueFrames(CommandDirection direction, std::mt19937_64& random);

/// Whether the frame's two bytes name the class.
template <class T>
bool isFrameOf(std::span<const std::uint8_t> frame) {
  return frame[4] == CommandInfo<T>::code && frame[5] == static_cast<std::uint8_t>(CommandInfo<T>::family);
}

}  // namespace poker::holdem
