#pragma once

#include <compare>
#include <cstdint>
#include <type_traits>

namespace poker {

/// A small number with a value of its own for "not set", which is what it holds until it is given another.
template <class T, auto Invalid>
class TypeWrapper {
 public:
  using value_type = T;
  static constexpr T kInvalid = static_cast<T>(Invalid);

  constexpr TypeWrapper() = default;
  constexpr TypeWrapper(T value) : value_(value) {}

  constexpr T value() const { return value_; }
  constexpr bool isValid() const { return value_ != kInvalid; }

  friend constexpr auto operator<=>(const TypeWrapper&, const TypeWrapper&) = default;

 private:
  T value_ = kInvalid;
};

/// A seat at a table, counted from 0; 100 means no seat. Travels as one byte.
using SeatID = TypeWrapper<std::uint8_t, 100>;

/// A connection of the host; -1 means none.
using ConnectionID = TypeWrapper<std::int32_t, -1>;

}  // namespace poker
