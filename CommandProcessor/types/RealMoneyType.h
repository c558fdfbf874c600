#pragma once

#include <CommandProcessor/platform/Export.h>

#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace poker {

class DeserializeCommandBuf;
class SerializeCommandBuf;

/// The integers an amount is calculated with: every one whose whole range fits 64 signed bits. An unsigned 64-bit value
/// (a `size()` on most machines), a bool and a char are refused; the caller casts what it means.
template <typename T>
concept MoneyInteger = std::integral<T> && sizeof(T) <= sizeof(std::int64_t) &&
                       (std::signed_integral<T> || sizeof(T) < sizeof(std::int64_t)) &&
                       !std::same_as<std::remove_cv_t<T>, bool> && !std::same_as<std::remove_cv_t<T>, char>;

/// An amount of chips or cash: an exact, signed 64-bit count of hundredths of the currency unit.
///
/// No operation wraps or has undefined behaviour: where a result lies outside the 64-bit range it *saturates*, that is,
/// it becomes the nearest end of that range. The one precondition is a divisor that is not zero, which is not checked.
/// Nothing depends on the locale. A value may be copied and read from any thread.
class COMMANDPROCESSOR_API RealMoneyType {
 public:
  enum class DollarSign : bool { kOmit, kPrefix };

  /// Zero.
  constexpr RealMoneyType() noexcept = default;

  template <MoneyInteger T>
  [[nodiscard]] static constexpr RealMoneyType fromHundredths(T hundredths) noexcept {
    return RealMoneyType(hundredths);
  }

  /// Saturates.
  template <MoneyInteger T>
  [[nodiscard]] static constexpr RealMoneyType fromUnits(T units) noexcept {
    return RealMoneyType(saturatingMultiply(units, kHundredthsPerUnit));
  }

  /// Reads what toString() prints without its "$", and never fails:
  /// - the whole part is the leading integer: white space, one optional sign, digits. Without digits it is 0;
  /// - the fraction is the digits, at most two, right after the first "."; anything else ends it, further digits are
  ///   dropped, never rounded, and a single digit counts tenths;
  /// - a "-" anywhere in the text makes the fraction negative;
  /// - a NUL character ends the text. Whatever follows a number is ignored.
  ///
  /// So ".5" is 0.50, "-.5" is -0.50, "5." is 5, "1.x" and "1.-5" are 1, "1.5-" is 0.50, "abc" is 0, and "$12.50",
  /// having no leading integer, is 0.50. Saturates: the whole part first, then the sum.
  [[nodiscard]] static RealMoneyType fromText(std::string_view text) noexcept;

  /// The same; a null pointer gives 0.
  [[nodiscard]] static RealMoneyType fromText(const char* text) noexcept;

  /// The amount nearest to `units`, a number of whole units: printed with two decimals, rounded on the double's exact
  /// value with ties to even, and parsed. Saturates; NaN and both infinities, having no digits, give 0.
  [[nodiscard]] static RealMoneyType fromDouble(double units) noexcept;

  [[nodiscard]] constexpr std::int64_t hundredths() const noexcept { return hundredths_; }

  /// Decimal text: no fraction for whole amounts ("12"), otherwise always two digits ("-0.50", "1.05"). The "$" stands
  /// before the sign ("$-0.50").
  [[nodiscard]] std::string toString(DollarSign sign = DollarSign::kOmit) const;

  /// Travels as the 64-bit count of hundredths.
  void serialize(SerializeCommandBuf& buf) const;
  /// @throws CommandDeserializeException*
  void deserialize(DeserializeCommandBuf& buf);

  constexpr RealMoneyType& operator+=(RealMoneyType other) noexcept {
    if (__builtin_add_overflow(hundredths_, other.hundredths_, &hundredths_)) {
      hundredths_ = other.hundredths_ < 0 ? INT64_MIN : INT64_MAX;
    }
    return *this;
  }

  constexpr RealMoneyType& operator-=(RealMoneyType other) noexcept {
    if (__builtin_sub_overflow(hundredths_, other.hundredths_, &hundredths_)) {
      hundredths_ = other.hundredths_ < 0 ? INT64_MAX : INT64_MIN;
    }
    return *this;
  }

  /// Adds whole units, not hundredths. Saturates twice: the units as an amount, then the sum.
  template <MoneyInteger T>
  constexpr RealMoneyType& operator+=(T units) noexcept {
    return *this += fromUnits(units);
  }

  template <MoneyInteger T>
  constexpr RealMoneyType& operator*=(T factor) noexcept {
    hundredths_ = saturatingMultiply(hundredths_, factor);
    return *this;
  }

  /// Truncates toward zero. `divisor` must not be 0.
  template <MoneyInteger T>
  constexpr RealMoneyType& operator/=(T divisor) noexcept {
    const std::int64_t wide = divisor;
    hundredths_ = (hundredths_ == INT64_MIN && wide == -1) ? INT64_MAX : hundredths_ / wide;
    return *this;
  }

  [[nodiscard]] friend constexpr RealMoneyType operator+(RealMoneyType a, RealMoneyType b) noexcept { return a += b; }
  [[nodiscard]] friend constexpr RealMoneyType operator-(RealMoneyType a, RealMoneyType b) noexcept { return a -= b; }

  template <MoneyInteger T>
  [[nodiscard]] friend constexpr RealMoneyType operator+(RealMoneyType amount, T units) noexcept {
    return amount += units;
  }

  template <MoneyInteger T>
  [[nodiscard]] friend constexpr RealMoneyType operator*(RealMoneyType amount, T factor) noexcept {
    return amount *= factor;
  }

  template <MoneyInteger T>
  [[nodiscard]] friend constexpr RealMoneyType operator/(RealMoneyType amount, T divisor) noexcept {
    return amount /= divisor;
  }

  /// Truncates toward zero.
  [[nodiscard]] constexpr RealMoneyType half() const noexcept { return *this / 2; }

  /// This amount times `numerator`, then divided by `denominator`. The product keeps all of its 128 bits; the quotient
  /// truncates toward zero and saturates. `denominator` must not be 0.
  [[nodiscard]] RealMoneyType scaled(std::int64_t numerator, std::int64_t denominator) const noexcept;

  /// Replaces `shares` by `n` shares of this amount. Shares differ by at most one hundredth; the larger ones stand next
  /// to each other, wrapping past the end, from a start position that is drawn anew for every call. An amount of zero
  /// or below gives shares of zero.
  /// @return the start position, below `n`; 0 when `n` is 0 or the amount is not above zero
  /// @throw std::bad_alloc or std::length_error when `shares` cannot grow, std::exception when the system has no
  ///        randomness for the thread's first draw
  /// Any thread may call it: each draws from a generator of its own, seeded by the system.
  std::size_t split(std::size_t n, std::vector<RealMoneyType>& shares) const;

  /// The same from a given start position (taken modulo `n`): for replays and tests.
  std::size_t split(std::size_t n, std::vector<RealMoneyType>& shares, std::size_t start) const;

  /// By the count of hundredths.
  [[nodiscard]] friend constexpr auto operator<=>(RealMoneyType, RealMoneyType) noexcept = default;

 private:
  static constexpr std::int64_t kHundredthsPerUnit = 100;

  constexpr explicit RealMoneyType(std::int64_t hundredths) noexcept : hundredths_(hundredths) {}

  static constexpr std::int64_t saturatingMultiply(std::int64_t a, std::int64_t b) noexcept {
    std::int64_t product = 0;
    if (__builtin_mul_overflow(a, b, &product)) product = (a < 0) == (b < 0) ? INT64_MAX : INT64_MIN;
    return product;
  }

  std::int64_t hundredths_ = 0;
};

// Outside the class: a Windows host imports the class, and an imported class cannot define a member of its own type.

inline constexpr RealMoneyType kZeroMoney{};

/// The largest amount the tables deal in, 2147483647 units. Arithmetic does not stop here but at the 64-bit range.
inline constexpr RealMoneyType kLargestMoney = RealMoneyType::fromHundredths(std::int64_t{214748364700});

}  // namespace poker
