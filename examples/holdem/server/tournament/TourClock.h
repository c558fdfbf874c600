#pragma once

#include <examples/holdem/server/table/Seats.h>
#include <examples/holdem/server/tournament/TourSettings.h>

#include <cstdint>
#include <map>
#include <optional>

namespace poker::holdem {

/// The levels of a tournament, the breaks between them, and what chips may be bought when. It has no timer: whoever owns it asks at next() what is due.
class TourClock {
 public:
  /// @param settings  must outlive the clock
  explicit TourClock(const TourSettings& settings) : settings_(settings) {}

  /// The first level begins.
  void start(Clock::time_point now) { begin(1, now); }
  /// From 1; 0 before the start.
  std::int16_t level() const { return level_; }
  const BlindLevel& blinds() const { return blindsOf(level_); }
  bool hasNextLevel() const { return static_cast<std::size_t>(level_) < settings_.levels.size(); }
  const BlindLevel& nextBlinds() const { return blindsOf(static_cast<std::int16_t>(level_ + 1)); }

  /// A table has played a hand in this level.
  void countHand(std::uint32_t table) { ++hands_[table]; }
  bool isLevelOver(Clock::time_point now) const;
  /// What is left of the level: seconds, or hands of the table that has played most; at least 0.
  std::int32_t unitsLeft(Clock::time_point now) const;
  /// Whether the next level is to be announced; once a level.
  bool isNoticeDue(Clock::time_point now);
  /// Goes to the next level, or to the break before it: tables are to stop then.
  void endLevel(Clock::time_point now);

  /// Tables stop for a break, or have it.
  bool isStopped() const { return isStopped_; }
  bool isBreak() const { return breakUntil_.has_value(); }
  /// All tables have stopped.
  void beginBreak(Clock::time_point now) { breakUntil_ = now + settings_.breakTime; }
  bool isBreakOver(Clock::time_point now) const { return breakUntil_ && now >= *breakUntil_; }
  /// Rounded up.
  std::int32_t secondsOfBreak(Clock::time_point now) const;
  void endBreak(Clock::time_point now);

  // When chips may be bought beside the first ones.

  bool areRebuysOpen() const { return level_ != 0 && number() <= settings_.rebuyLevels; }
  bool isAddOnOpen() const;
  /// Neither of them is open, nor will be.
  bool areExtrasOver() const;

  /// The clock stands from now on. It must not be asked for anything that takes a time meanwhile.
  void pause(Clock::time_point now) { pausedAt_ = now; }
  void resume(Clock::time_point now);

  /// When to ask next what is due; nothing while that does not hang on time.
  std::optional<Clock::time_point> next() const;

 private:
  const BlindLevel& blindsOf(std::int16_t level) const;
  void begin(std::int16_t level, Clock::time_point now);
  std::uint32_t number() const { return static_cast<std::uint32_t>(level_); }
  bool isAddOnInBreak() const;
  bool isByTime() const { return settings_.switchType == TOUR_NAMES::SwitchType::ByTime; }
  std::uint32_t mostHands() const;

  const TourSettings& settings_;
  std::int16_t level_ = 0;
  std::optional<Clock::time_point> endsAt_;    // the level; nothing for the last one, and when hands are counted
  std::optional<Clock::time_point> noticeAt_;  // of the next one
  std::map<std::uint32_t, std::uint32_t> hands_;
  bool isNoticeGiven_ = false;
  bool isStopped_ = false;
  std::optional<Clock::time_point> breakUntil_;
  Clock::time_point pausedAt_{};
};

/// Rounded up; 0 for what is past.
std::int32_t secondsUntil(Clock::time_point moment, Clock::time_point now);

}  // namespace poker::holdem
