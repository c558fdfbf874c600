#pragma once

#include <CommandProcessor/core/Catalogue.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace poker {

/// As how many frames a command counts against the rate of its peer: as one, unless set otherwise. A host sets more for
/// questions whose answers are long or take it time.
///
///     options.costs.set<ClGetServerInfo>(10);
///
/// Look-ups take constant time; any thread may do them once the table is set up.
class CommandCosts {
 public:
  /// @param frames  0 counts as 1
  template <class T>
  constexpr void set(std::uint8_t frames) {
    costs_[indexOf(CommandInfo<T>::family, CommandInfo<T>::code)] = frames;
  }
  constexpr std::uint8_t of(ProcessorFamily family, std::uint8_t code) const {
    const std::size_t index = indexOf(family, code);
    return index < costs_.size() && costs_[index] > 1 ? costs_[index] : 1;
  }

 private:
  static constexpr std::size_t indexOf(ProcessorFamily family, std::uint8_t code) {
    return static_cast<std::size_t>(family) * 256 + code;
  }

  std::array<std::uint8_t, 7 * 256> costs_{};
};

}  // namespace poker
