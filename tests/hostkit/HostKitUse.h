#pragma once

// What the tests of the host kit share: frames of commands, and what the pools hold.

#include <CommandProcessor/commands/AllCommands.h>
#include <hostkit/CommandHandle.h>
#include <hostkit/Encode.h>

#include <cstdint>
#include <utility>
#include <vector>

#include <tests/support/WireBytes.h>

namespace poker::test {

/// The whole frame of a command, length slot included.
inline Bytes frameOf(const PokerCommandI& command) {
  SerializeCommandBuf buffer(64);
  const auto frame = encodeCommand(command, buffer);
  return {frame.begin(), frame.end()};
}

template <class T, class... Args>
Bytes frame(Args&&... args) {
  return frameOf(*make<T>(std::forward<Args>(args)...));
}

inline Bytes operator+(Bytes first, const Bytes& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

/// Idle objects of a class: what a leak or a double release changes.
template <class T>
std::uint32_t idle() {
  return CachedCmdCreator<T>::cashedCmds.tsSize();
}

}  // namespace poker::test
