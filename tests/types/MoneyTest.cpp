#include <CommandProcessor/types/RealMoneyType.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <limits>
#include <locale>
#include <numeric>
#include <thread>

#ifdef CP_HAS_RAPIDCHECK
#include <rapidcheck/gtest.h>
#endif

namespace poker {
namespace {

using Doubles = std::numeric_limits<double>;
constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();

constexpr RealMoneyType cents(std::int64_t count) { return RealMoneyType::fromHundredths(count); }
std::int64_t parsed(std::string_view text) { return RealMoneyType::fromText(text).hundredths(); }
std::int64_t rounded(double units) { return RealMoneyType::fromDouble(units).hundredths(); }

#ifdef CP_HAS_RAPIDCHECK
// Numbers of every magnitude, and the borders at which 64-bit arithmetic breaks.
rc::Gen<std::int64_t> anyInt64() {
  const auto wide = rc::gen::resize(rc::kNominalSize, rc::gen::arbitrary<std::int64_t>());
  return rc::gen::oneOf(rc::gen::apply([](std::int64_t value, int shift) -> std::int64_t { return value >> shift; },
                                       wide, rc::gen::inRange(0, 64)),
                        rc::gen::element<std::int64_t>(0, 1, -1, 99, -99, -100, kMin, kMin + 1, kMax, kMax / 100,
                                                       0xFFFFFFFF, -0x100000000, 0x7FFFFFFF00000001));
}
#endif

template <typename T>
concept Accepted = requires(RealMoneyType amount, T number) {
  amount + number;
}
|| requires(RealMoneyType amount, T number) { amount* number; }
|| requires(RealMoneyType amount, T number) { amount == number; }
|| requires(T number) { RealMoneyType::fromUnits(number); }
|| requires(T number) { RealMoneyType::fromHundredths(number); };
static_assert(!Accepted<double> && !Accepted<bool> && !Accepted<char> && !Accepted<std::uint64_t>,
              "a number of unclear unit or range turns into money");

using Case = std::pair<const char*, std::int64_t>;

TEST(Money, PrintsTheSignOfFractionsAndDropsWholeOnes) {
  for (const auto& [text, count] :
       {Case("0", 0), Case("12", 1200), Case("0.05", 5), Case("-0.05", -5), Case("0.20", 20), Case("1.05", 105),
        Case("1.50", 150), Case("-0.50", -50), Case("-0.99", -99), Case("-1", -100), Case("-1.50", -150),
        Case("2147483647", kLargestMoney.hundredths()), Case("-92233720368547758.08", kMin)}) {
    EXPECT_EQ(cents(count).toString(), text);
    EXPECT_EQ(cents(count).toString(RealMoneyType::DollarSign::kPrefix), std::string("$") + text);
  }
}

TEST(Money, ParsesOddTextWithoutFailing) {
  for (const auto& [text, count] :
       {Case("", 0),       Case("12.5", 1250), Case("12.345", 1234),      Case("12.999", 1299),   Case("-3.07", -307),
        Case(".5", 50),    Case("-.5", -50),   Case("5.", 500),           Case("-", 0),           Case("+", 0),
        Case("-.", 0),     Case("abc", 0),     Case("abc.25", 25),        Case("1.x5", 100),      Case("1.5x", 150),
        Case("1.-5", 100), Case("1.5-", 50),   Case("7-", 700),           Case("+1.25", 125),     Case("+-5", 0),
        Case("-+5", 0),    Case("- 5", 0),     Case(" \t\n\v\f\r8", 800), Case("12abc.50", 1250), Case("1.2.3", 120),
        Case("1,50", 100), Case("1e3", 100),   Case("$12.50", 50)}) {
    EXPECT_EQ(parsed(text), count) << '"' << text << '"';
  }
  EXPECT_EQ(RealMoneyType::fromText(nullptr), kZeroMoney);
  EXPECT_EQ(parsed(std::string_view()), 0);
  EXPECT_EQ(parsed(std::string_view("12.345", 4)), 1230) << "read past the end of the view";
  EXPECT_EQ(parsed(std::string_view("1\0.5-", 5)), 100) << "read past the NUL";
}

TEST(Money, ParsingSaturates) {
  for (const auto& [text, count] :
       {Case("92233720368547758.08", kMax), Case("-92233720368547758.09", kMin), Case("92233720368547759", kMax),
        Case("-92233720368547759", kMin), Case("99999999999999999999.99", kMax), Case("-99999999999999999999", kMin)}) {
    EXPECT_EQ(parsed(text), count) << text;
  }
}

TEST(Money, DoubleIsRoundedByItsExactValue) {
  EXPECT_EQ(rounded(1.005), 100);  // below the tie, though 1.005 * 100 rounds to 100.5
  EXPECT_EQ(rounded(0.125), 12);   // a tie goes to even
  EXPECT_EQ(rounded(-0.001), 0);
  EXPECT_EQ(rounded(-Doubles::max()), kMin);  // 313 characters
  EXPECT_EQ(rounded(Doubles::max()), kMax);
  for (const double odd : {Doubles::infinity(), -Doubles::infinity(), Doubles::quiet_NaN(), Doubles::denorm_min()}) {
    EXPECT_EQ(rounded(odd), 0) << odd;
  }
}

TEST(Money, LocaleDoesNotReachText) {
  struct Comma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    std::string do_grouping() const override { return "\3"; }
  };
  const std::locale streams = std::locale::global(std::locale(std::locale::classic(), new Comma));
  for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "German_Germany.1252"}) {
    if (std::setlocale(LC_ALL, name) != nullptr) break;
  }
  EXPECT_EQ(cents(-123456789).toString(), "-1234567.89");
  EXPECT_EQ(parsed("1234.56"), 123456);
  EXPECT_EQ(rounded(1234567.891), 123456789);
  std::setlocale(LC_ALL, "C");
  std::locale::global(streams);
}

TEST(Money, UnitsAndHundredthsStayApart) {
  RealMoneyType amount = RealMoneyType::fromUnits(12);
  EXPECT_EQ(amount += cents(5), cents(1205));
  EXPECT_EQ(amount += 3, cents(1505));
  EXPECT_EQ(cents(-7).half(), cents(-3));  // toward zero
  EXPECT_LT(cents(kMin), cents(kMax));
}

TEST(Money, ScalingAndDivisionSurviveTheEndsOfTheRange) {
  EXPECT_EQ(cents(kMin) / -1, cents(kMax));
  EXPECT_EQ(cents(kMin).scaled(kMin, kMin), cents(kMin));
  EXPECT_EQ(cents(kMin).scaled(kMin, kMax), cents(kMax));
  EXPECT_EQ(cents(kMin).scaled(1, -1), cents(kMax));
  EXPECT_EQ(cents(kMax).scaled(kMax - 1, kMax), cents(kMax - 1));
  EXPECT_EQ(cents(-1000).scaled(1, 3), cents(-333));
}

#ifdef CP_HAS_RAPIDCHECK
RC_GTEST_PROP(Money, TextRoundTripKeepsEveryAmount, ()) {
  const RealMoneyType amount = cents(*anyInt64());
  RC_ASSERT(RealMoneyType::fromText(amount.toString()) == amount);
}

RC_GTEST_PROP(Money, DoubleMatchesTheFormatter, ()) {
  const double units = static_cast<double>(*anyInt64()) / *rc::gen::inRange(1, 2001);
  char text[400];
  std::snprintf(text, sizeof text, "%.*f", 2, units);
  RC_ASSERT(RealMoneyType::fromDouble(units) == RealMoneyType::fromText(text));
}

#ifdef __SIZEOF_INT128__
__extension__ using Wide = __int128;

RealMoneyType clamped(Wide value) { return cents(static_cast<std::int64_t>(std::clamp<Wide>(value, kMin, kMax))); }

RC_GTEST_PROP(Money, ArithmeticSaturates, ()) {
  const std::int64_t a = *anyInt64();
  const std::int64_t b = *anyInt64();
  RC_ASSERT(cents(a) + cents(b) == clamped(Wide{a} + b));
  RC_ASSERT(cents(a) - cents(b) == clamped(Wide{a} - b));
  RC_ASSERT(cents(a) * b == clamped(Wide{a} * b));
  RC_ASSERT(cents(a) + b == cents(a) + clamped(Wide{b} * 100));
  const std::int64_t c = *rc::gen::distinctFrom(anyInt64(), 0);
  RC_ASSERT(cents(a) / c == clamped(Wide{a} / c));
  RC_ASSERT(cents(a).scaled(b, c) == clamped(Wide{a} * b / c));
}
#endif

RC_GTEST_PROP(Money, SplitConservesTheAmount, ()) {
  const RealMoneyType amount = cents(*rc::gen::suchThat(anyInt64(), [](std::int64_t v) { return v > 0; }));
  const auto n = *rc::gen::inRange<std::size_t>(1, 40);
  std::vector<RealMoneyType> shares(*rc::gen::inRange<std::size_t>(0, 60), cents(77));
  const std::size_t start = amount.split(n, shares);
  RC_ASSERT(shares.size() == n && start < n);
  RC_ASSERT(std::accumulate(shares.begin(), shares.end(), kZeroMoney) == amount);
  std::vector<RealMoneyType> replayed;
  RC_ASSERT(amount.split(n, replayed, start + n) == start);
  RC_ASSERT(replayed == shares);
  std::rotate(shares.begin(), shares.begin() + static_cast<std::ptrdiff_t>(start), shares.end());
  RC_ASSERT(std::is_sorted(shares.rbegin(), shares.rend()));
  RC_ASSERT(shares.front() - shares.back() <= cents(1));
}
#endif

TEST(Money, SplitOfNothingLeavesZeroShares) {
  std::vector<RealMoneyType> shares(5, cents(9));
  EXPECT_EQ(cents(-4).split(3, shares, 2), 0u);
  EXPECT_EQ(shares, std::vector<RealMoneyType>(3));
  EXPECT_EQ(cents(100).split(0, shares), 0u);
  EXPECT_TRUE(shares.empty());
  shares = {cents(100)};
  shares[0].split(3, shares, 1);
  EXPECT_EQ(shares, (std::vector{cents(33), cents(34), cents(33)})) << "the amount was one of the shares";
}

TEST(Money, SplitFavoursNoSeatAndNoThreadRepeatsAnother) {
  std::vector<std::size_t> starts[2];
  for (auto& mine : starts) {
    std::thread([&mine] {
      std::vector<RealMoneyType> shares;
      for (int i = 0; i < 9000; ++i) mine.push_back(cents(100).split(3, shares));
    }).join();
    for (const std::size_t seat : {0u, 1u, 2u}) {
      EXPECT_NEAR(static_cast<double>(std::count(mine.begin(), mine.end(), seat)), 3000, 400);  // 9 sigma
    }
  }
  EXPECT_NE(starts[0], starts[1]);
}

}  // namespace
}  // namespace poker
