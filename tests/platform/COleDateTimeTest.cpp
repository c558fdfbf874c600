#include <CommandProcessor/platform/COleDateTime.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace poker {
namespace {

using Date = COleDateTime;
using Span = COleDateTimeSpan;
constexpr double kSecond = 1.0 / 86'400.0;

TEST(COleDateTime, MeansTheOldPlatformsDayCount) {
  const struct {
    double days;
    const char* text;
    int dayOfWeek;
    int dayOfYear;
  } cases[] = {
      {0.0, "1899-12-30T00:00:00Z", 7, 364},
      {-0.25, "1899-12-30T06:00:00Z", 7, 364},
      {-1.25, "1899-12-29T06:00:00Z", 6, 363},
      {25569.0, "1970-01-01T00:00:00Z", 5, 1},
      {36525.5, "1999-12-31T12:00:00Z", 6, 365},
      {45351.0 + 3723 * kSecond, "2024-02-29T01:02:03Z", 5, 60},
      {-657434.75, "0100-01-01T18:00:00Z", 6, 1},
      // Rounding to the second carries into the day, but not out of the range.
      {1 - 0.4 * kSecond, "1899-12-31T00:00:00Z", 1, 365},
      {-2 + 0.4 * kSecond, "1899-12-30T00:00:00Z", 7, 364},
      {2958466 - 0.4 * kSecond, "9999-12-31T23:59:59Z", 6, 365},
  };
  for (const auto& c : cases) {
    const Date date(c.days);
    EXPECT_EQ(date.toIsoString(), c.text) << c.days;
    EXPECT_EQ(date.GetDayOfWeek(), c.dayOfWeek) << c.days;
    EXPECT_EQ(date.GetDayOfYear(), c.dayOfYear) << c.days;
  }
  EXPECT_EQ(Date(1899, 12, 29, 6, 0, 0).days(), -1.25);
  EXPECT_EQ(Date(1970, 1, 1, 12, 0, 0).days(), 25569.5);
}

TEST(COleDateTime, RejectsDatesThatDoNotExist) {
  const std::int32_t cases[][6] = {{1900, 2, 29, 0, 0, 0}, {2023, 4, 31, 0, 0, 0}, {2023, 0, 1, 0, 0, 0},
                                   {2023, 13, 1, 0, 0, 0}, {2023, 1, 0, 0, 0, 0},  {2023, 1, 257, 0, 0, 0},
                                   {99, 1, 1, 0, 0, 0},    {10000, 1, 1, 0, 0, 0}, {2023, 1, 1, 24, 0, 0},
                                   {2023, 1, 1, 0, 60, 0}, {2023, 1, 1, 0, 0, -1}, {67559, 1, 1, 0, 0, 0}};
  for (const auto& c : cases) {
    const Date date(c[0], c[1], c[2], c[3], c[4], c[5]);
    EXPECT_EQ(date.GetStatus(), Date::invalid) << c[0] << '-' << c[1] << '-' << c[2];
    EXPECT_EQ(date.toIsoString(), "invalid");
  }
  Date date;
  EXPECT_EQ(date.SetDate(2024, 2, 29), Date::valid);
  date.SetStatus(Date::null);
  EXPECT_EQ(date.toIsoString(), "null");
}

TEST(COleDateTime, CarriesEveryBitPatternAndAnswersForIt) {
  std::mt19937_64 random(7);
  std::vector<std::uint64_t> patterns = {
      0x7FF0000000000001,  // a signalling NaN
      0xFFF8000000000123, 0x7FF0000000000000, 0xFFF0000000000000, 0x8000000000000000, 1,
      0x7FEFFFFFFFFFFFFF, 0xFFEFFFFFFFFFFFFF};
  for (const double days : {-657435.0, 2958466.0, 9.3e18, -2147483649.0}) {
    patterns.push_back(std::bit_cast<std::uint64_t>(days));
  }
  for (int i = 0; i < 20'000; ++i) patterns.push_back(random());
  for (const std::uint64_t bits : patterns) {
    const auto status = static_cast<Date::DateTimeStatus>(random() % 4 == 0 ? static_cast<std::int32_t>(random()) : 0);
    const Date date = Date::fromBits(bits, status);
    ASSERT_EQ(date.bits(), bits);
    ASSERT_EQ(date.GetStatus(), status);
    const bool usable = status == Date::valid && date.days() > -657435.0 && date.days() < 2958466.0;
    for (const std::int32_t part : {date.GetYear(), date.GetMonth(), date.GetDay(), date.GetHour(), date.GetMinute(),
                                    date.GetSecond(), date.GetDayOfWeek(), date.GetDayOfYear()}) {
      ASSERT_EQ(part == Date::error, !usable) << std::hex << bits;
    }
    ASSERT_EQ(date.toSysTime().has_value(), usable);
    ASSERT_EQ(date.toIsoString().size() == 20, usable);
    ASSERT_EQ(date == date, usable || status == Date::null);
    const Date later = date + Span(1.0);
    ASSERT_EQ(later > date, usable && date.days() < 2958465.0) << std::hex << bits;
    ASSERT_EQ((date - Date()).GetStatus() == Span::valid, usable);
  }
}

TEST(COleDateTime, RoundTripsWholeSecondsAndMillisecondsOfTheWholeRange) {
  std::mt19937_64 random(11);
  const std::int64_t first = Date(100, 1, 1, 0, 0, 0).toSysTime()->time_since_epoch() / std::chrono::seconds(1);
  const std::int64_t last = Date(9999, 12, 31, 23, 59, 59).toSysTime()->time_since_epoch() / std::chrono::seconds(1);
  std::uniform_int_distribution<std::int64_t> any(first * 1000, last * 1000 + 999);
  constexpr bool kTimeTHoldsAll = sizeof(std::time_t) == 8;
  for (int i = 0; i < 50'000; ++i) {
    const Date::SysTime time{std::chrono::milliseconds{any(random)}};
    ASSERT_EQ(Date::fromSysTime(time).toSysTime(), time);
    const std::int64_t count = time.time_since_epoch().count() / 1000;
    const auto seconds = static_cast<std::time_t>(count);
    if (kTimeTHoldsAll || seconds == count) {
      ASSERT_EQ(Date::fromTimeT(seconds).toTimeT(), seconds);
    } else {
      ASSERT_FALSE(Date::fromSysTime(time).toTimeT());
    }
  }
  EXPECT_EQ(Date(1969, 12, 31, 23, 59, 59).toTimeT(), -1);
  for (const std::time_t outside : {std::numeric_limits<std::time_t>::min(), static_cast<std::time_t>(first - 1),
                                    static_cast<std::time_t>(last + 1), std::numeric_limits<std::time_t>::max()}) {
    EXPECT_EQ(Date::fromTimeT(outside).GetStatus(), kTimeTHoldsAll ? Date::invalid : Date::valid) << outside;
  }
}

TEST(COleDateTime, ConvertsTimePointsWithoutOverflow) {
  using Clock = std::chrono::system_clock;
  using namespace std::chrono_literals;
  const Clock::time_point before = Clock::time_point{} - 600us;
  EXPECT_EQ(Date::fromTimePoint(before).toTimePoint(), Clock::time_point{} - 1ms);
  EXPECT_EQ(Date::fromTimePoint(Clock::time_point{} + 499us).toTimePoint(), Clock::time_point{});
  for (const auto extreme : {Clock::time_point::min(), Clock::time_point::max()}) {
    EXPECT_EQ(Date::fromTimePoint(extreme).GetStatus(), Date::valid);
  }
  EXPECT_FALSE(Date(100, 1, 1, 0, 0, 0).toTimePoint());
  EXPECT_FALSE(Date(9999, 12, 31, 0, 0, 0).toTimePoint());
}

TEST(COleDateTime, ComputesAndComparesAcrossTheZeroDay) {
  const Date morning(1899, 12, 29, 6, 0, 0);
  const Date evening(1899, 12, 29, 18, 0, 0);
  EXPECT_LT(morning, evening);  // though -1.25 > -1.75
  EXPECT_EQ(Date(-0.25), Date(0.25));
  EXPECT_EQ((evening + Span(0, 12, 0, 0)).toIsoString(), "1899-12-30T06:00:00Z");
  EXPECT_EQ((Date(1899, 12, 30, 6, 0, 0) - Span(1, 0, 0, 0)), morning);
  EXPECT_EQ((evening - morning).GetTotalHours(), 12.0);
  EXPECT_EQ((Date(1900, 1, 1, 0, 0, 0) - morning).GetDays(), 2);
  // A step too small to be told from midnight must not become a whole day.
  EXPECT_EQ((Date(0.0) - Span(1e-20)).toIsoString(), "1899-12-30T00:00:00Z");
  EXPECT_EQ((Date(-657433.0) - Span(1e-11)).toIsoString(), "0100-01-02T00:00:00Z");
}

TEST(COleDateTime, GivesDefinedResultsForOperandsWithoutADate) {
  const Date good(2024, 1, 1, 0, 0, 0);
  const Date bad(45000.0, Date::invalid);
  const Date none(45000.0, Date::null);
  Span noSpan(1.0);
  noSpan.SetStatus(Span::null);
  EXPECT_EQ((bad + Span(1.0)).GetStatus(), Date::invalid);
  EXPECT_EQ((bad + noSpan).GetStatus(), Date::invalid);
  EXPECT_EQ((good + noSpan).GetStatus(), Date::null);
  EXPECT_EQ((good - none).GetStatus(), Span::null);
  EXPECT_EQ((none - bad).GetStatus(), Span::invalid);
  EXPECT_EQ((good + Span(3'000'000.0)).GetStatus(), Date::invalid);
  EXPECT_EQ(none, none);
  EXPECT_NE(bad, bad);
  EXPECT_FALSE(good < bad || bad < good || good == bad || good < none || good > none);
}

TEST(COleDateTimeSpan, TakesItselfApartAndIsInvalidBeyondItsRange) {
  const Span span(1, 2, 3, 4);
  EXPECT_DOUBLE_EQ(span.GetTotalSeconds(), 93'784.0);
  EXPECT_EQ(span.GetSeconds(), 4);
  EXPECT_EQ((span - Span(2, 0, 0, 0)).GetDays(), 0);
  EXPECT_EQ((span - Span(2, 0, 0, 0)).GetHours(), -21);
  Span day;
  for (int i = 0; i < 24; ++i) day += Span(0, 1, 0, 0);  // accumulates to a hair's breadth of one day
  EXPECT_EQ(day.GetDays(), 1);
  EXPECT_EQ(day.GetMinutes(), 0);

  constexpr auto kMost = std::numeric_limits<std::int32_t>::max();
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  for (const Span& bad : {Span(kMost, kMost, kMost, kMost), Span(kNan), Span(-1e300), Span(3e6) + Span(3e6)}) {
    EXPECT_EQ(bad.GetStatus(), Span::invalid);
    EXPECT_EQ(bad.GetSeconds(), 0);
    EXPECT_TRUE(std::isnan(bad.GetTotalDays()));
  }
}

}  // namespace
}  // namespace poker
