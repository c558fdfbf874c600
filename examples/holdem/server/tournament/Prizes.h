#pragma once

#include <CommandProcessor/types/RealMoneyType.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace poker::holdem {

/// What each paid place gets of the prize fund, in ten thousandths, the winner first; ten thousand together. One place of
/// eight is paid, the last one only begun: the second gets half of what the winner gets, the third a third, and so on.
/// @param entries  players who have paid, at least one
std::vector<std::uint32_t> usualShares(std::size_t entries);

/// Splits the fund to the last hundredth; what rounding leaves goes to the winner.
/// @param fund    not below zero
/// @param shares  as usualShares() has them, ten thousand together; those of places that nobody can take (more than `entries`) go to the winner
/// @return no more than `entries` prizes, none below zero, the fund together
std::vector<RealMoneyType> prizesOf(RealMoneyType fund, std::span<const std::uint32_t> shares, std::size_t entries);

}  // namespace poker::holdem
