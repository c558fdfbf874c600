#include <examples/holdem/server/tournament/BlindLevels.h>

#include <fmt/format.h>

#include <cstdint>
#include <iterator>
#include <stdexcept>

namespace poker::holdem {

namespace {

constexpr std::int64_t kGrowth = 10'000;  // from the first big blind to the last one

/// The roundest amount that is a third to a half above this one: a multiple of the largest 1, 2 or 5 with zeros behind it
/// that has one there, and of several the largest.
RealMoneyType roundAbove(RealMoneyType amount) {
  constexpr std::int64_t kLargestTen = 1'000'000'000'000;  // above kLargestMoney
  const std::int64_t least = (amount.hundredths() * 4 + 2) / 3;
  const std::int64_t most = amount.hundredths() * 3 / 2;
  for (std::int64_t ten = kLargestTen; ten != 0; ten /= 10) {
    for (const std::int64_t step : {ten * 5, ten * 2, ten}) {
      const std::int64_t multiple = most / step * step;
      if (multiple >= least) return RealMoneyType::fromHundredths(multiple);
    }
  }
  return amount * 2;  // 0.01
}

std::string durationText(TourSettings::Duration time) {
  const std::int64_t milliseconds = time.count();
  if (milliseconds % 60'000 == 0) return fmt::format("{} min", milliseconds / 60'000);
  return fmt::format("{} s", static_cast<double>(milliseconds) / 1000);
}

std::string lengthText(const TourSettings& tour) {
  if (tour.switchType == TOUR_NAMES::SwitchType::ByTime) return durationText(std::chrono::seconds(tour.levelLength));
  return fmt::format("{} {}", tour.levelLength, tour.levelLength == 1 ? "hand" : "hands");
}

}  // namespace

std::vector<BlindLevel> usualLevels(const BlindLevel& first) {
  if (first.smallBlind <= kZeroMoney || first.smallBlind > first.bigBlind) {
    throw std::invalid_argument("the small blind must lie between 0.01 and the big blind");
  }
  std::vector<BlindLevel> levels;
  BlindLevel level = first;
  while (level.bigBlind <= kLargestMoney) {
    levels.push_back(level);
    if (level.bigBlind >= first.bigBlind * kGrowth) break;
    level.smallBlind = roundAbove(level.smallBlind);
    level.bigBlind = first.bigBlind.scaled(level.smallBlind.hundredths(), first.smallBlind.hundredths());
  }
  return levels;
}

std::string levelsText(const TourSettings& tour) {
  const std::string length = lengthText(tour);
  const std::size_t count = tour.levels.size();
  std::string text;
  for (std::size_t number = 1; number <= count; ++number) {
    const BlindLevel& level = tour.levels[number - 1];
    fmt::format_to(std::back_inserter(text), "{}  {}/{}", number, level.smallBlind.toString(),
                   level.bigBlind.toString());
    if (number == count) break;
    fmt::format_to(std::back_inserter(text), "  {}\n", length);
    if (tour.breakEvery != 0 && number % tour.breakEvery == 0) {
      fmt::format_to(std::back_inserter(text), "Break  {}\n", durationText(tour.breakTime));
    }
  }
  return text;
}

}  // namespace poker::holdem
