#include <examples/holdem/server/tournament/TourClock.h>

#include <algorithm>
#include <limits>

namespace poker::holdem {

namespace {

constexpr std::chrono::seconds kNotice{60};  // before the next level

}  // namespace

std::int32_t secondsUntil(Clock::time_point moment, Clock::time_point now) {
  const auto left = std::chrono::ceil<std::chrono::seconds>(moment - now).count();
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(left, 0, std::numeric_limits<std::int32_t>::max()));
}

const BlindLevel& TourClock::blindsOf(std::int16_t level) const {
  const std::size_t index = static_cast<std::size_t>(std::max<std::int16_t>(level, 1)) - 1;
  return settings_.levels[std::min(index, settings_.levels.size() - 1)];
}

void TourClock::begin(std::int16_t level, Clock::time_point now) {
  level_ = level;
  hands_.clear();
  isNoticeGiven_ = false;
  endsAt_.reset();
  noticeAt_.reset();
  if (!isByTime() || !hasNextLevel()) return;
  endsAt_ = now + std::chrono::seconds(settings_.levelLength);
  noticeAt_ = std::max(now, *endsAt_ - kNotice);
}

std::uint32_t TourClock::mostHands() const {
  std::uint32_t most = 0;
  for (const auto& [table, hands] : hands_) most = std::max(most, hands);
  return most;
}

bool TourClock::isLevelOver(Clock::time_point now) const {
  if (isStopped_ || level_ == 0 || !hasNextLevel()) return false;
  return isByTime() ? now >= *endsAt_ : mostHands() >= settings_.levelLength;
}

std::int32_t TourClock::unitsLeft(Clock::time_point now) const {
  if (isByTime()) return endsAt_ ? secondsUntil(*endsAt_, now) : 0;
  return static_cast<std::int32_t>(settings_.levelLength - std::min(settings_.levelLength, mostHands()));
}

bool TourClock::isNoticeDue(Clock::time_point now) {
  if (isNoticeGiven_ || isStopped_ || !hasNextLevel()) return false;
  const bool isLastHand = mostHands() + 1 == settings_.levelLength;
  return isNoticeGiven_ = isByTime() ? noticeAt_ && now >= *noticeAt_ : isLastHand;
}

void TourClock::endLevel(Clock::time_point now) {
  const auto every = static_cast<std::int16_t>(settings_.breakEvery);
  if (every != 0 && level_ % every == 0) {
    isStopped_ = true;
  } else {
    begin(static_cast<std::int16_t>(level_ + 1), now);
  }
}

std::int32_t TourClock::secondsOfBreak(Clock::time_point now) const {
  return breakUntil_ ? secondsUntil(*breakUntil_, now) : 0;
}

void TourClock::endBreak(Clock::time_point now) {
  isStopped_ = false;
  breakUntil_.reset();
  begin(static_cast<std::int16_t>(level_ + 1), now);
}

bool TourClock::isAddOnInBreak() const {
  return settings_.breakEvery != 0 && settings_.rebuyLevels != 0 && settings_.rebuyLevels % settings_.breakEvery == 0;
}

bool TourClock::isAddOnOpen() const {
  if (settings_.addOnChips == kZeroMoney || level_ == 0) return false;
  return isAddOnInBreak() ? number() == settings_.rebuyLevels && isBreak() : number() == settings_.rebuyLevels + 1;
}

bool TourClock::areExtrasOver() const {
  const bool addOnFollows = settings_.addOnChips != kZeroMoney && !isAddOnInBreak();
  return level_ != 0 && number() > settings_.rebuyLevels + (addOnFollows ? 1 : 0);
}

void TourClock::resume(Clock::time_point now) {
  for (std::optional<Clock::time_point>* moment : {&endsAt_, &noticeAt_, &breakUntil_}) {
    if (*moment) **moment += now - pausedAt_;
  }
}

std::optional<Clock::time_point> TourClock::next() const {
  if (isStopped_) return breakUntil_;
  return isNoticeGiven_ || !noticeAt_ ? endsAt_ : noticeAt_;
}

}  // namespace poker::holdem
