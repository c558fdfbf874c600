#pragma once

#include <CommandProcessor/platform/Export.h>

#include <bit>
#include <chrono>
#include <compare>
#include <cstdint>
#include <ctime>
#include <optional>
#include <string>

#ifdef GetCurrentTime  // a macro of <windows.h>
#undef GetCurrentTime
#endif

namespace poker {

/// A length of time in days and fractions of a day, up to about 9,900 years either way, with a validity status.
///
/// Where an operand is not valid the result is not: invalid if one operand is invalid (or has a status that does not
/// exist), else null. Results out of range are invalid. Two spans that are not valid compare as unordered, except two
/// null ones, which are equal.
class COMMANDPROCESSOR_API COleDateTimeSpan {
 public:
  enum DateTimeSpanStatus : std::int32_t { valid = 0, invalid = 1, null = 2 };

  constexpr COleDateTimeSpan() noexcept = default;
  explicit COleDateTimeSpan(double days) noexcept;
  COleDateTimeSpan(std::int32_t days, std::int32_t hours, std::int32_t minutes, std::int32_t seconds) noexcept;

  /// Any number of each, also negative.
  void SetDateTimeSpan(std::int32_t days, std::int32_t hours, std::int32_t minutes, std::int32_t seconds) noexcept;

  constexpr DateTimeSpanStatus GetStatus() const noexcept { return status_; }
  constexpr void SetStatus(DateTimeSpanStatus status) noexcept { status_ = status; }

  /// The whole span in one unit, with its fraction; not a number unless the span is valid.
  double GetTotalDays() const noexcept;
  double GetTotalHours() const noexcept;
  double GetTotalMinutes() const noexcept;
  double GetTotalSeconds() const noexcept;

  /// The span taken apart, to the nearest millisecond, each part with the sign of the span; 0 unless it is valid.
  std::int32_t GetDays() const noexcept;
  std::int32_t GetHours() const noexcept;    ///< -23..23
  std::int32_t GetMinutes() const noexcept;  ///< -59..59
  std::int32_t GetSeconds() const noexcept;  ///< -59..59

  COleDateTimeSpan operator-() const noexcept;
  COleDateTimeSpan& operator+=(const COleDateTimeSpan& other) noexcept;
  COleDateTimeSpan& operator-=(const COleDateTimeSpan& other) noexcept;
  friend COleDateTimeSpan operator+(COleDateTimeSpan a, const COleDateTimeSpan& b) noexcept { return a += b; }
  friend COleDateTimeSpan operator-(COleDateTimeSpan a, const COleDateTimeSpan& b) noexcept { return a -= b; }

  std::partial_ordering operator<=>(const COleDateTimeSpan& other) const noexcept;
  bool operator==(const COleDateTimeSpan& other) const noexcept { return (*this <=> other) == 0; }

 private:
  friend class COleDateTime;
  COleDateTimeSpan(double days, std::int32_t status) noexcept;
  std::int64_t milliseconds() const noexcept;

  double days_ = 0;
  DateTimeSpanStatus status_ = valid;
};

/// A date and time of the years 100 to 9999: days since 1899-12-30 as a double, and a validity status. The fraction is
/// the time of day and counts forward from midnight for negative days too: -1.25 is 1899-12-29 06:00, and so -0.25 is
/// the same time as 0.25.
///
/// The type has no time zone; where it meets the system's clock or a zone is written, it is UTC.
///
/// An object may hold any bits at all (they come from the network): those out of range, NaN and infinities are carried
/// unchanged, and count as an invalid date wherever the date is asked for, computed with or compared. Rules of
/// arithmetic and comparison as for COleDateTimeSpan; dates compare by the time that they mean.
class COMMANDPROCESSOR_API COleDateTime {
 public:
  enum DateTimeStatus : std::int32_t { valid = 0, invalid = 1, null = 2 };

  using SysTime = std::chrono::sys_time<std::chrono::milliseconds>;

  /// 1899-12-30 00:00, valid.
  constexpr COleDateTime() noexcept = default;

  /// Nothing is checked; see fromBits where NaNs must keep all their bits.
  explicit constexpr COleDateTime(double days, DateTimeStatus status = valid) noexcept
      : bits_(std::bit_cast<std::uint64_t>(days)), status_(status) {}

  COleDateTime(std::int32_t year, std::int32_t month, std::int32_t day, std::int32_t hour, std::int32_t minute,
               std::int32_t second) noexcept {
    SetDateTime(year, month, day, hour, minute, second);
  }

  /// The day count as it travels. Unlike a double it passes every processor's registers unchanged.
  static constexpr COleDateTime fromBits(std::uint64_t bits, DateTimeStatus status) noexcept {
    COleDateTime result;
    result.bits_ = bits;
    result.status_ = status;
    return result;
  }
  constexpr std::uint64_t bits() const noexcept { return bits_; }
  constexpr double days() const noexcept { return std::bit_cast<double>(bits_); }

  /// What was stored, though it be none of the three values; says nothing about the day count.
  constexpr DateTimeStatus GetStatus() const noexcept { return status_; }
  constexpr void SetStatus(DateTimeStatus status) noexcept { status_ = status; }

  /// A date that does not exist or is out of range makes the object invalid, with day count 0. Returns the status.
  DateTimeStatus SetDateTime(std::int32_t year, std::int32_t month, std::int32_t day, std::int32_t hour,
                             std::int32_t minute, std::int32_t second) noexcept;
  DateTimeStatus SetDate(std::int32_t year, std::int32_t month, std::int32_t day) noexcept;      ///< at 00:00
  DateTimeStatus SetTime(std::int32_t hour, std::int32_t minute, std::int32_t second) noexcept;  ///< on 1899-12-30

  /// Now, in UTC.
  static COleDateTime GetCurrentTime() noexcept;

  /// What the accessors below return when there is no date to take a part of.
  static constexpr std::int32_t error = -1;

  /// Parts of the time to the nearest second.
  std::int32_t GetYear() const noexcept;
  std::int32_t GetMonth() const noexcept;
  std::int32_t GetDay() const noexcept;
  std::int32_t GetHour() const noexcept;
  std::int32_t GetMinute() const noexcept;
  std::int32_t GetSecond() const noexcept;
  std::int32_t GetDayOfWeek() const noexcept;  ///< 1 is Sunday
  std::int32_t GetDayOfYear() const noexcept;  ///< 1 is the first of January

  /// To and from UTC time; kept to the nearest millisecond. From: invalid out of range. To: nothing when there is no
  /// date, or when it is outside what the target can hold.
  static COleDateTime fromSysTime(SysTime time) noexcept;
  static COleDateTime fromTimePoint(std::chrono::system_clock::time_point time) noexcept;
  static COleDateTime fromTimeT(std::time_t time) noexcept;
  std::optional<SysTime> toSysTime() const noexcept;
  std::optional<std::chrono::system_clock::time_point> toTimePoint() const noexcept;
  std::optional<std::time_t> toTimeT() const noexcept;  ///< to the nearest second

  /// "1899-12-29T06:00:00Z", to the nearest second; "null" or "invalid" when there is no date.
  std::string toIsoString() const;

  COleDateTime& operator+=(const COleDateTimeSpan& span) noexcept;
  COleDateTime& operator-=(const COleDateTimeSpan& span) noexcept;
  friend COleDateTime operator+(COleDateTime date, const COleDateTimeSpan& span) noexcept { return date += span; }
  friend COleDateTime operator-(COleDateTime date, const COleDateTimeSpan& span) noexcept { return date -= span; }
  COleDateTimeSpan operator-(const COleDateTime& other) const noexcept;

  std::partial_ordering operator<=>(const COleDateTime& other) const noexcept;
  bool operator==(const COleDateTime& other) const noexcept { return (*this <=> other) == 0; }

 private:
  /// The status, or invalid for a valid one whose day count is out of range or no number.
  DateTimeStatus meaning() const noexcept;
  std::optional<std::chrono::sys_seconds> toSeconds() const noexcept;

  std::uint64_t bits_ = 0;
  DateTimeStatus status_ = valid;
};

}  // namespace poker
