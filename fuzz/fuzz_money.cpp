// Money: texts that are parsed, amounts that are printed, and arithmetic against 128 bits. The first byte of an input says
// what the others are: a text, or numbers.

#include <CommandProcessor/types/RealMoneyType.h>
#include <fuzz/support/Frames.h>
#include <inspect/CommandText.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

using namespace poker;
using namespace poker::fuzz;

namespace {

RealMoneyType cents(std::int64_t count) { return RealMoneyType::fromHundredths(count); }

void checkPrinted(RealMoneyType amount) {
  require(RealMoneyType::fromText(amount.toString()) == amount, "an amount's text is parsed as the amount");
  require(RealMoneyType::fromText(moneyText(amount)) == amount, "its text with two decimals too");
}

/// Parsing by the C library's rules: strtoll, then up to two digits behind the first point.
std::int64_t modelOf(const char* text) {
  errno = 0;
  const long long whole = std::strtoll(text, nullptr, 10);
  std::int64_t sum = 0;
  if (__builtin_mul_overflow(std::int64_t{whole}, std::int64_t{100}, &sum)) sum = whole < 0 ? INT64_MIN : INT64_MAX;
  const char* point = std::strchr(text, '.');
  if (point == nullptr) return sum;
  int fraction = 0;
  for (int digit = 1, weight = 10; digit <= 2 && point[digit] >= '0' && point[digit] <= '9'; ++digit, weight /= 10) {
    fraction += (point[digit] - '0') * weight;
  }
  if (std::strchr(text, '-') != nullptr) fraction = -fraction;
  if (__builtin_add_overflow(sum, fraction, &sum)) sum = fraction < 0 ? INT64_MIN : INT64_MAX;
  return sum;
}

void checkText(std::span<const std::uint8_t> bytes) {
  static std::string text;  // ends with a NUL, as the model wants it
  text.assign(textOf(bytes));
  const RealMoneyType amount = RealMoneyType::fromText(textOf(bytes));  // ends with the bytes
  require(amount.hundredths() == modelOf(text.c_str()), "a text is parsed as strtoll and its fraction say");
  require(RealMoneyType::fromText(text.c_str()) == amount, "a text with a NUL is parsed as one without");
  checkPrinted(amount);
}

void checkDouble(double units) {
  const RealMoneyType amount = RealMoneyType::fromDouble(units);
  static char text[400];
  std::snprintf(text, sizeof text, "%.*f", 2, units);
  require(amount == RealMoneyType::fromText(text), "a double is rounded as it is printed");
  checkPrinted(amount);
}

#ifdef __SIZEOF_INT128__
__extension__ using Wide = __int128;

RealMoneyType clamped(Wide value) {
  return cents(static_cast<std::int64_t>(std::clamp<Wide>(value, INT64_MIN, INT64_MAX)));
}

void checkArithmetic(std::int64_t a, std::int64_t b, std::int64_t c) {
  require(cents(a) + cents(b) == clamped(Wide{a} + b), "sums saturate");
  require(cents(a) - cents(b) == clamped(Wide{a} - b), "differences saturate");
  require(cents(a) * b == clamped(Wide{a} * b), "products saturate");
  require(RealMoneyType::fromUnits(b) == clamped(Wide{b} * 100), "units saturate");
  require(cents(a) + b == cents(a) + clamped(Wide{b} * 100), "units are added as hundredths");
  require(cents(a).half() == clamped(Wide{a} / 2), "a half truncates");
  if (c == 0) return;
  require(cents(a) / c == clamped(Wide{a} / c), "quotients truncate");
  require(cents(a).scaled(b, c) == clamped(Wide{a} * b / c), "scaling keeps 128 bits");
}
#else
void checkArithmetic(std::int64_t a, std::int64_t b, std::int64_t c) {
  static_cast<void>(cents(a) + cents(b) - cents(b) * b + b);
  if (c != 0) static_cast<void>(cents(a).scaled(b, c) / c);
}
#endif

void checkSplit(std::int64_t amount, std::size_t n, std::size_t start) {
  static std::vector<RealMoneyType> shares;
  const std::size_t first = cents(amount).split(n, shares, start);
  require(shares.size() == n, "a split has as many shares as asked for");
  if (n == 0 || amount <= 0) return require(first == 0, "nothing has no start");
  require(first == start % n, "a split starts where it is told to");
  RealMoneyType sum;
  for (std::size_t i = 0; i < n; ++i) {
    const RealMoneyType share = shares[(first + i) % n];
    sum += share;
    require(share == shares[first] || share + cents(1) == shares[first], "shares differ by one hundredth at most");
    require(i == 0 || share <= shares[(first + i - 1) % n], "larger shares stand in front");
  }
  require(sum == cents(amount), "a split conserves the amount");
}

}  // namespace

std::vector<Bytes> fuzz::seeds() {
  std::vector<Bytes> made;
  for (const char* text : {"0", "12.50", "-0.05", " +1.25", "92233720368547758.07", "-92233720368547758.08", "1.5-",
                           "$7.x", "99999999999999999999.99", "1e3", "abc.25", "--5", "\t\n-1"}) {
    made.push_back(bytesOf(std::string("t").append(text)));
  }
  Bytes numbers(25, 0xFF);
  for (const char kind : {'a', 'd', 's'}) {
    numbers[0] = static_cast<std::uint8_t>(kind);
    made.push_back(numbers);
  }
  return made;
}

void fuzz::mutate(Bytes& input, Random& random) {
  if (input.empty() || random.oneIn(2)) return mutateBytes(input, random);
  if (input[0] == 't') {
    constexpr std::string_view kCharacters = "0123456789.-+ $e,\t";
    const std::size_t at = 1 + random.below(input.size());
    if (at == input.size() || random.oneIn(2)) {
      input.insert(input.begin() + static_cast<std::ptrdiff_t>(at),
                   bytesOf(kCharacters)[random.below(kCharacters.size())]);
    } else {
      input[at] = static_cast<std::uint8_t>(kCharacters[random.below(kCharacters.size())]);
    }
    return;
  }
  input.resize(25);
  const std::size_t at = 1 + 8 * random.below(3);
  std::uint64_t number = 0;
  std::memcpy(&number, &input[at], sizeof number);
  number = edge(number, 100, random);
  if (random.oneIn(2)) number = 0 - number;
  std::memcpy(&input[at], &number, sizeof number);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  if (data[0] == 't') {
    checkText({data + 1, size - 1});
    return 0;
  }
  std::array<std::int64_t, 3> numbers{};
  if (size > 1) std::memcpy(numbers.data(), data + 1, std::min(size - 1, sizeof numbers));
  checkPrinted(cents(numbers[0]));
  switch (data[0]) {
    case 'a':
      checkArithmetic(numbers[0], numbers[1], numbers[2]);
      break;
    case 'd':
      checkDouble(std::bit_cast<double>(numbers[0]));
      checkDouble(static_cast<double>(numbers[1]) / 1000);
      break;
    default:
      checkSplit(numbers[0], static_cast<std::size_t>(static_cast<std::uint64_t>(numbers[1]) % 64),
                 static_cast<std::size_t>(numbers[2]));
  }
  return 0;
}
