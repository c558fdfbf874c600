#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace poker {

/// A number that travels as its little-endian memory bytes. Width is the type's own, so fields are declared with
/// fixed-width types; bool is no number (it is one byte, 0 or 1).
template <class T>
concept WireNumber = (std::integral<T> && !std::same_as<std::remove_cv_t<T>, bool>) || std::same_as<T, double>;

/// An enumeration whose underlying type is stated travels as that number.
template <class T>
concept WireEnum = std::is_enum_v<T> && requires {
  T{0};  // only such an enumeration can be made from a number so
};

namespace wire {

static_assert(sizeof(double) == 8, "a double travels as 8 bytes of IEEE-754");

/// Stores a number's wire bytes at a place that has room for them.
template <WireNumber T>
inline void storeLittleEndian(std::uint8_t* to, T value) noexcept {
  if constexpr (std::endian::native == std::endian::little) {
    std::memcpy(to, &value, sizeof value);
  } else {
    auto bytes = std::bit_cast<std::array<std::uint8_t, sizeof(T)>>(value);
    std::reverse_copy(bytes.begin(), bytes.end(), to);
  }
}

/// Loads a number from its wire bytes.
template <WireNumber T>
inline T loadLittleEndian(const std::uint8_t* from) noexcept {
  if constexpr (std::endian::native == std::endian::little) {
    T value;
    std::memcpy(&value, from, sizeof value);
    return value;
  } else {
    std::array<std::uint8_t, sizeof(T)> bytes;
    std::reverse_copy(from, from + sizeof(T), bytes.begin());
    return std::bit_cast<T>(bytes);
  }
}

}  // namespace wire
}  // namespace poker
