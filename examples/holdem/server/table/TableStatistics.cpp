#include <examples/holdem/server/table/TableStatistics.h>

#include <algorithm>
#include <limits>
#include <span>

namespace poker::holdem {

void TableStatistics::add(const PlayedHand& hand) { hands_[played_++ % kHands] = hand; }

std::size_t TableStatistics::count() const {
  return static_cast<std::size_t>(std::min<std::uint64_t>(played_, kHands));
}

RealMoneyType TableStatistics::averagePot() const {
  if (played_ == 0) return kZeroMoney;
  RealMoneyType sum;
  for (const PlayedHand& hand : std::span(hands_).first(count())) sum += hand.pot;
  return sum / static_cast<std::int64_t>(count());
}

unsigned TableStatistics::playersPerFlop() const {
  unsigned dealt = 0, sawFlop = 0;
  for (const PlayedHand& hand : std::span(hands_).first(count())) {
    dealt += hand.dealt;
    sawFlop += hand.sawFlop;
  }
  return dealt == 0 ? 0 : sawFlop * 100 / dealt;
}

std::uint32_t TableStatistics::handsPerHour() const {
  if (played_ == 0) return 0;
  const PlayedHand& oldest = hands_[played_ < kHands ? 0 : played_ % kHands];
  const PlayedHand& last = hands_[(played_ - 1) % kHands];
  const std::chrono::nanoseconds passed = last.ended - oldest.began;
  if (passed.count() <= 0) return 0;
  const auto hands = static_cast<std::int64_t>(count()) * std::chrono::nanoseconds(std::chrono::hours(1)) / passed;
  return static_cast<std::uint32_t>(std::min<std::int64_t>(hands, std::numeric_limits<std::uint32_t>::max()));
}

}  // namespace poker::holdem
