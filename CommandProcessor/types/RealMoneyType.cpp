#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/wire/DeserializeCommandBuf.h>
#include <CommandProcessor/wire/SerializeCommandBuf.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <random>
#include <system_error>
#include <type_traits>

namespace poker {

static_assert(std::is_trivially_copyable_v<RealMoneyType> && sizeof(RealMoneyType) == 8);

namespace {

constexpr std::size_t kFractionDigits = 2;

// What strtoll takes from the front of a text: white space, one optional sign, digits; clamped to 64 bits.
std::int64_t leadingInteger(std::string_view text) noexcept {
  const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
  if (start == std::string_view::npos) return 0;
  text.remove_prefix(start);
  if (text.front() == '+') {
    text.remove_prefix(1);
    if (text.starts_with('-')) return 0;  // from_chars knows the minus alone: "+-5" would pass
  }
  std::int64_t value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec == std::errc::result_out_of_range) value = text.front() == '-' ? INT64_MIN : INT64_MAX;
  return value;
}

// Tenths and hundredths from the characters behind the point, 0 to 99.
int fractionHundredths(std::string_view behindPoint) noexcept {
  int fraction = 0;
  int weight = 10;
  for (const char c : behindPoint.substr(0, kFractionDigits)) {
    if (c < '0' || c > '9') break;
    fraction += (c - '0') * weight;
    weight /= 10;
  }
  return fraction;
}

constexpr std::uint64_t magnitude(std::int64_t value) noexcept {
  return value < 0 ? std::uint64_t{0} - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
}

struct Unsigned128 {
  std::uint64_t high;
  std::uint64_t low;
};

// By halves of 32 bits: 32-bit targets have no 128-bit integer.
constexpr Unsigned128 multiply(std::uint64_t a, std::uint64_t b) noexcept {
  constexpr std::uint64_t kLowHalf = 0xFFFFFFFF;
  const std::uint64_t lowLow = (a & kLowHalf) * (b & kLowHalf);
  const std::uint64_t highLow = (a >> 32) * (b & kLowHalf) + (lowLow >> 32);
  const std::uint64_t lowHigh = (a & kLowHalf) * (b >> 32) + (highLow & kLowHalf);
  return {(a >> 32) * (b >> 32) + (highLow >> 32) + (lowHigh >> 32), (lowHigh << 32) | (lowLow & kLowHalf)};
}

// The quotient, or the largest 64-bit number when it needs more bits. The divisor is at most 2^63.
constexpr std::uint64_t divide(Unsigned128 dividend, std::uint64_t divisor) noexcept {
  if (dividend.high == 0) return dividend.low / divisor;
  if (dividend.high >= divisor) return UINT64_MAX;
  // Long division by bits: `high` is the remainder so far, `low` shifts the dividend out and the quotient in.
  auto [high, low] = dividend;
  for (int bit = 0; bit < 64; ++bit) {
    high = (high << 1) | (low >> 63);  // below twice the divisor: no bit is lost
    low <<= 1;
    if (high >= divisor) {
      high -= divisor;
      low |= 1;
    }
  }
  return low;
}

// Uniform over 0 to n - 1.
std::size_t drawBelow(std::size_t n) {
  thread_local std::mt19937_64 generator = [] {
    std::random_device system;
    std::seed_seq seed{system(), system(), system(), system()};
    return std::mt19937_64(seed);
  }();
  return std::uniform_int_distribution<std::size_t>(0, n - 1)(generator);
}

}  // namespace

RealMoneyType RealMoneyType::fromText(std::string_view text) noexcept {
  text = text.substr(0, text.find('\0'));
  const RealMoneyType whole = fromUnits(leadingInteger(text));
  const std::size_t point = text.find('.');
  if (point == std::string_view::npos) return whole;
  const RealMoneyType fraction = fromHundredths(fractionHundredths(text.substr(point + 1)));
  return text.find('-') == std::string_view::npos ? whole + fraction : whole - fraction;
}

RealMoneyType RealMoneyType::fromText(const char* text) noexcept {
  return text == nullptr ? RealMoneyType() : fromText(std::string_view(text));
}

RealMoneyType RealMoneyType::fromDouble(double units) noexcept {
  // The longest text: sign, all digits of the largest double, point, fraction.
  char text[1 + std::numeric_limits<double>::max_exponent10 + 1 + 1 + kFractionDigits];
  const auto result = std::to_chars(std::begin(text), std::end(text), units, std::chars_format::fixed, kFractionDigits);
  return fromText(std::string_view(text, static_cast<std::size_t>(result.ptr - text)));
}

std::string RealMoneyType::toString(DollarSign sign) const {
  char text[24];  // "$-92233720368547758.08" is the longest
  char* end = text;
  if (sign == DollarSign::kPrefix) *end++ = '$';
  const std::int64_t whole = hundredths_ / kHundredthsPerUnit;
  const int fraction = static_cast<int>(hundredths_ % kHundredthsPerUnit);
  if (whole == 0 && fraction < 0) *end++ = '-';
  end = std::to_chars(end, std::end(text), whole).ptr;
  if (fraction != 0) {
    const int cents = fraction < 0 ? -fraction : fraction;
    *end++ = '.';
    *end++ = static_cast<char>('0' + cents / 10);
    *end++ = static_cast<char>('0' + cents % 10);
  }
  return std::string(text, end);
}

RealMoneyType RealMoneyType::scaled(std::int64_t numerator, std::int64_t denominator) const noexcept {
  const bool negative = ((hundredths_ < 0) != (numerator < 0)) != (denominator < 0);
  const std::uint64_t quotient = divide(multiply(magnitude(hundredths_), magnitude(numerator)), magnitude(denominator));
  if (quotient > magnitude(INT64_MAX)) return RealMoneyType(negative ? INT64_MIN : INT64_MAX);
  const auto result = static_cast<std::int64_t>(quotient);
  return RealMoneyType(negative ? -result : result);
}

std::size_t RealMoneyType::split(std::size_t n, std::vector<RealMoneyType>& shares) const {
  return split(n, shares, n > 0 && hundredths_ > 0 ? drawBelow(n) : 0);
}

std::size_t RealMoneyType::split(std::size_t n, std::vector<RealMoneyType>& shares, std::size_t start) const {
  const RealMoneyType amount = *this;  // may be an element of `shares`
  shares.assign(n, RealMoneyType());
  if (n == 0 || amount.hundredths_ <= 0) return 0;
  start %= n;
  const auto total = static_cast<std::uint64_t>(amount.hundredths_);
  std::fill(shares.begin(), shares.end(), RealMoneyType(static_cast<std::int64_t>(total / n)));
  auto position = start;
  for (std::uint64_t left = total % n; left > 0; --left) {
    shares[position].hundredths_ += 1;
    if (++position == n) position = 0;
  }
  return start;
}

void RealMoneyType::serialize(SerializeCommandBuf& buf) const { buf << hundredths(); }

void RealMoneyType::deserialize(DeserializeCommandBuf& buf) {
  std::int64_t hundredths;
  buf >> hundredths;
  *this = fromHundredths(hundredths);
}

}  // namespace poker
