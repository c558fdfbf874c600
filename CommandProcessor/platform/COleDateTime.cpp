#include <CommandProcessor/platform/COleDateTime.h>

#include <cmath>
#include <limits>

namespace poker {
namespace {

using std::chrono::milliseconds;
using std::chrono::sys_days;
using std::chrono::year_month_day;
using Status = std::int32_t;

constexpr Status kValid = 0;
constexpr Status kInvalid = 1;
constexpr Status kNull = 2;

constexpr double kMillisecondsPerDay = 86'400'000.0;
constexpr double kMaxSpanDays = 3'615'897.0;

constexpr sys_days kDayZero{std::chrono::year{1899} / 12 / 30};
constexpr sys_days kFirstDay{std::chrono::year{100} / 1 / 1};
constexpr sys_days kLastDay{std::chrono::year{9999} / 12 / 31};
constexpr double kFirstCount{(kFirstDay - kDayZero).count()};
constexpr double kLastCount{(kLastDay - kDayZero).count()};

/// The status of a result of two operands.
constexpr Status combined(Status a, Status b) noexcept {
  const auto broken = [](Status status) { return status != kValid && status != kNull; };
  if (broken(a) || broken(b)) return kInvalid;
  return a == kNull || b == kNull ? kNull : kValid;
}

std::partial_ordering compare(Status statusA, double a, Status statusB, double b) noexcept {
  if (statusA == kValid && statusB == kValid) return a <=> b;
  return statusA == kNull && statusB == kNull ? std::partial_ordering::equivalent : std::partial_ordering::unordered;
}

/// The last day before 1899-12-30 reaches from -1 down to, but not including, -2; and so at the range's start.
bool inRange(double days) noexcept { return days > kFirstCount - 1 && days < kLastCount + 1; }

/// Day counts do not grow with time below zero; this scale does.
double linearOf(double days) noexcept {
  const double day = std::trunc(days);
  return day + std::fabs(days - day);
}

double daysOf(double linear) noexcept {
  const double day = std::floor(linear);
  if (!(day < 0)) return linear;
  const double days = day - (linear - day);
  // A time of day that rounds to 24 hours is the next midnight; left as it is, it would mean the day before.
  return std::trunc(days) == day ? days : day + 1;
}

/// For -Wfloat-conversion and overflow's sake: the callers have checked the range.
std::int64_t nearest(double value) noexcept { return std::llround(value); }

}  // namespace

COleDateTimeSpan::COleDateTimeSpan(double days) noexcept : COleDateTimeSpan(days, kValid) {}

COleDateTimeSpan::COleDateTimeSpan(double days, std::int32_t status) noexcept
    : days_(days), status_(static_cast<DateTimeSpanStatus>(status)) {
  if (status_ == valid && !(std::fabs(days) <= kMaxSpanDays)) status_ = invalid;
  if (status_ != valid) days_ = 0;
}

COleDateTimeSpan::COleDateTimeSpan(std::int32_t days, std::int32_t hours, std::int32_t minutes,
                                   std::int32_t seconds) noexcept {
  SetDateTimeSpan(days, hours, minutes, seconds);
}

void COleDateTimeSpan::SetDateTimeSpan(std::int32_t days, std::int32_t hours, std::int32_t minutes,
                                       std::int32_t seconds) noexcept {
  const std::int64_t total = ((std::int64_t{days} * 24 + hours) * 60 + minutes) * 60 + seconds;
  *this = COleDateTimeSpan(static_cast<double>(total) / 86'400.0);
}

double COleDateTimeSpan::GetTotalDays() const noexcept {
  return status_ == valid ? days_ : std::numeric_limits<double>::quiet_NaN();
}
double COleDateTimeSpan::GetTotalHours() const noexcept { return GetTotalDays() * 24; }
double COleDateTimeSpan::GetTotalMinutes() const noexcept { return GetTotalDays() * 1'440; }
double COleDateTimeSpan::GetTotalSeconds() const noexcept { return GetTotalDays() * 86'400; }

std::int64_t COleDateTimeSpan::milliseconds() const noexcept {
  return status_ == valid ? nearest(days_ * kMillisecondsPerDay) : 0;
}

std::int32_t COleDateTimeSpan::GetDays() const noexcept {
  return static_cast<std::int32_t>(milliseconds() / 86'400'000);
}
std::int32_t COleDateTimeSpan::GetHours() const noexcept {
  return static_cast<std::int32_t>(milliseconds() / 3'600'000 % 24);
}
std::int32_t COleDateTimeSpan::GetMinutes() const noexcept {
  return static_cast<std::int32_t>(milliseconds() / 60'000 % 60);
}
std::int32_t COleDateTimeSpan::GetSeconds() const noexcept {
  return static_cast<std::int32_t>(milliseconds() / 1'000 % 60);
}

COleDateTimeSpan COleDateTimeSpan::operator-() const noexcept { return {-days_, combined(status_, kValid)}; }

COleDateTimeSpan& COleDateTimeSpan::operator+=(const COleDateTimeSpan& other) noexcept {
  return *this = COleDateTimeSpan(days_ + other.days_, combined(status_, other.status_));
}

COleDateTimeSpan& COleDateTimeSpan::operator-=(const COleDateTimeSpan& other) noexcept { return *this += -other; }

std::partial_ordering COleDateTimeSpan::operator<=>(const COleDateTimeSpan& other) const noexcept {
  return compare(status_, days_, other.status_, other.days_);
}

COleDateTime::DateTimeStatus COleDateTime::SetDateTime(std::int32_t year, std::int32_t month, std::int32_t day,
                                                       std::int32_t hour, std::int32_t minute,
                                                       std::int32_t second) noexcept {
  *this = COleDateTime(0.0, invalid);
  const auto within = [](std::int32_t value, std::int32_t first, std::int32_t last) {
    return value >= first && value <= last;
  };
  if (!within(year, 100, 9999) || !within(month, 1, 12) || !within(day, 1, 31) || !within(hour, 0, 23) ||
      !within(minute, 0, 59) || !within(second, 0, 59)) {
    return status_;
  }
  const year_month_day date{std::chrono::year{year}, std::chrono::month{static_cast<unsigned>(month)},
                            std::chrono::day{static_cast<unsigned>(day)}};
  if (date.ok()) {
    *this = fromSysTime(sys_days{date} + std::chrono::hours{hour} + std::chrono::minutes{minute} +
                        std::chrono::seconds{second});
  }
  return status_;
}

COleDateTime::DateTimeStatus COleDateTime::SetDate(std::int32_t year, std::int32_t month, std::int32_t day) noexcept {
  return SetDateTime(year, month, day, 0, 0, 0);
}

COleDateTime::DateTimeStatus COleDateTime::SetTime(std::int32_t hour, std::int32_t minute,
                                                   std::int32_t second) noexcept {
  return SetDateTime(1899, 12, 30, hour, minute, second);
}

COleDateTime COleDateTime::GetCurrentTime() noexcept { return fromTimePoint(std::chrono::system_clock::now()); }

COleDateTime COleDateTime::fromSysTime(SysTime time) noexcept {
  const auto day = std::chrono::floor<std::chrono::days>(time);
  if (day < kFirstDay || day > kLastDay) return COleDateTime(0.0, invalid);
  const double count{static_cast<double>((day - kDayZero).count())};
  const double timeOfDay = static_cast<double>((time - day).count()) / kMillisecondsPerDay;
  return COleDateTime(count < 0 ? count - timeOfDay : count + timeOfDay);
}

COleDateTime COleDateTime::fromTimePoint(std::chrono::system_clock::time_point time) noexcept {
  // Truncated, not floored: the floor of the clock's first instant lies outside what the clock can hold.
  const auto sinceEpoch = time.time_since_epoch();
  auto rounded = std::chrono::duration_cast<milliseconds>(sinceEpoch);
  const auto rest = sinceEpoch - rounded;
  if (rest >= std::chrono::microseconds{500}) rounded += milliseconds{1};
  if (rest < std::chrono::microseconds{-500}) rounded -= milliseconds{1};
  return fromSysTime(SysTime{rounded});
}

COleDateTime COleDateTime::fromTimeT(std::time_t time) noexcept {
  const std::chrono::sys_seconds seconds{std::chrono::seconds{time}};
  if (seconds < kFirstDay || seconds >= kLastDay + std::chrono::days{1}) return COleDateTime(0.0, invalid);
  return fromSysTime(seconds);
}

COleDateTime::DateTimeStatus COleDateTime::meaning() const noexcept {
  return status_ == valid && !inRange(days()) ? invalid : status_;
}

std::optional<COleDateTime::SysTime> COleDateTime::toSysTime() const noexcept {
  if (meaning() != valid) return std::nullopt;
  const double count = days();
  const double day = std::trunc(count);
  return kDayZero + std::chrono::days{static_cast<int>(day)} +
         milliseconds{nearest(std::fabs(count - day) * kMillisecondsPerDay)};
}

std::optional<std::chrono::sys_seconds> COleDateTime::toSeconds() const noexcept {
  const auto time = toSysTime();
  if (!time) return std::nullopt;
  // The last half second of the year 9999 must not round into a year that does not exist.
  return std::min<std::chrono::sys_seconds>(std::chrono::floor<std::chrono::seconds>(*time + milliseconds{500}),
                                            kLastDay + std::chrono::seconds{86'399});
}

std::optional<std::chrono::system_clock::time_point> COleDateTime::toTimePoint() const noexcept {
  using Clock = std::chrono::system_clock;
  const auto time = toSysTime();
  if (!time || *time < std::chrono::ceil<milliseconds>(Clock::time_point::min()) ||
      *time > std::chrono::floor<milliseconds>(Clock::time_point::max())) {
    return std::nullopt;
  }
  return Clock::time_point{std::chrono::duration_cast<Clock::duration>(time->time_since_epoch())};
}

std::optional<std::time_t> COleDateTime::toTimeT() const noexcept {
  const auto time = toSeconds();
  if (!time) return std::nullopt;
  const std::int64_t count = time->time_since_epoch().count();
  if (count < std::numeric_limits<std::time_t>::min() || count > std::numeric_limits<std::time_t>::max()) {
    return std::nullopt;
  }
  return static_cast<std::time_t>(count);
}

namespace {

year_month_day dateOf(std::chrono::sys_seconds time) noexcept { return std::chrono::floor<std::chrono::days>(time); }

std::int32_t timePart(std::chrono::sys_seconds time, std::int32_t unit, std::int32_t modulus) noexcept {
  const auto sinceMidnight = time - std::chrono::floor<std::chrono::days>(time);
  return static_cast<std::int32_t>(sinceMidnight.count() / unit % modulus);
}

}  // namespace

std::int32_t COleDateTime::GetYear() const noexcept {
  const auto time = toSeconds();
  return time ? static_cast<int>(dateOf(*time).year()) : error;
}

std::int32_t COleDateTime::GetMonth() const noexcept {
  const auto time = toSeconds();
  return time ? static_cast<std::int32_t>(static_cast<unsigned>(dateOf(*time).month())) : error;
}

std::int32_t COleDateTime::GetDay() const noexcept {
  const auto time = toSeconds();
  return time ? static_cast<std::int32_t>(static_cast<unsigned>(dateOf(*time).day())) : error;
}

std::int32_t COleDateTime::GetHour() const noexcept {
  const auto time = toSeconds();
  return time ? timePart(*time, 3'600, 24) : error;
}

std::int32_t COleDateTime::GetMinute() const noexcept {
  const auto time = toSeconds();
  return time ? timePart(*time, 60, 60) : error;
}

std::int32_t COleDateTime::GetSecond() const noexcept {
  const auto time = toSeconds();
  return time ? timePart(*time, 1, 60) : error;
}

std::int32_t COleDateTime::GetDayOfWeek() const noexcept {
  const auto time = toSeconds();
  if (!time) return error;
  const std::chrono::weekday day{std::chrono::floor<std::chrono::days>(*time)};
  return static_cast<std::int32_t>(day.c_encoding()) + 1;
}

std::int32_t COleDateTime::GetDayOfYear() const noexcept {
  const auto time = toSeconds();
  if (!time) return error;
  const auto day = std::chrono::floor<std::chrono::days>(*time);
  return static_cast<std::int32_t>((day - sys_days{dateOf(*time).year() / 1 / 1}).count()) + 1;
}

std::string COleDateTime::toIsoString() const {
  if (status_ == null) return "null";
  if (!toSeconds()) return "invalid";
  std::string text;
  const auto number = [&text](std::int32_t value, std::int32_t highest) {
    for (; highest != 0; highest /= 10) text += static_cast<char>('0' + value / highest % 10);
  };
  const auto part = [&](std::int32_t value, char before) {
    text += before;
    number(value, 10);
  };
  number(GetYear(), 1000);
  part(GetMonth(), '-');
  part(GetDay(), '-');
  part(GetHour(), 'T');
  part(GetMinute(), ':');
  part(GetSecond(), ':');
  return text + 'Z';
}

COleDateTime& COleDateTime::operator+=(const COleDateTimeSpan& span) noexcept {
  const Status status = combined(meaning(), span.status_);
  const double count = daysOf(linearOf(days()) + span.days_);
  if (status != kValid) return *this = COleDateTime(0.0, static_cast<DateTimeStatus>(status));
  return *this = inRange(count) ? COleDateTime(count) : COleDateTime(0.0, invalid);
}

COleDateTime& COleDateTime::operator-=(const COleDateTimeSpan& span) noexcept { return *this += -span; }

COleDateTimeSpan COleDateTime::operator-(const COleDateTime& other) const noexcept {
  return {linearOf(days()) - linearOf(other.days()), combined(meaning(), other.meaning())};
}

std::partial_ordering COleDateTime::operator<=>(const COleDateTime& other) const noexcept {
  return compare(meaning(), linearOf(days()), other.meaning(), linearOf(other.days()));
}

}  // namespace poker
