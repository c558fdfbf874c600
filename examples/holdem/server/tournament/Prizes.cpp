#include <examples/holdem/server/tournament/Prizes.h>

#include <algorithm>

namespace poker::holdem {

namespace {

constexpr std::uint32_t kWhole = 10'000;
constexpr std::size_t kEntriesAPlace = 8;

}  // namespace

std::vector<std::uint32_t> usualShares(std::size_t entries) {
  const std::size_t places = (entries + kEntriesAPlace - 1) / kEntriesAPlace;
  // The winner's weight, which the place divides; large, so that dividing costs no precision that a share could show.
  constexpr std::uint64_t kWinner = 1'000'000'000;
  std::uint64_t all = 0;
  for (std::size_t place = 1; place <= places; ++place) all += kWinner / place;

  std::vector<std::uint32_t> shares;
  std::uint32_t left = kWhole;
  for (std::size_t place = 1; place <= places; ++place) {
    const auto share = static_cast<std::uint32_t>(kWinner / place * kWhole / all);
    if (share == 0) break;  // so many entries that this place would get nothing
    shares.push_back(share);
    left -= share;
  }
  shares.front() += left;
  return shares;
}

std::vector<RealMoneyType> prizesOf(RealMoneyType fund, std::span<const std::uint32_t> shares, std::size_t entries) {
  std::vector<RealMoneyType> prizes(std::min(shares.size(), entries));
  RealMoneyType left = fund;
  for (std::size_t i = 0; i < prizes.size(); ++i) {
    prizes[i] = fund.scaled(shares[i], kWhole);
    left -= prizes[i];
  }
  if (!prizes.empty()) prizes.front() += left;
  return prizes;
}

}  // namespace poker::holdem
