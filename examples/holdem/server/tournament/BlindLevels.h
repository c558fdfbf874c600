#pragma once

#include <examples/holdem/server/tournament/TourSettings.h>

#include <string>
#include <vector>

namespace poker::holdem {

/// Levels that begin with these blinds, until the big blind is ten thousand times the first or as large as an amount can be.
/// The small blind grows by a third to a half each, to the roundest number there is (0.01 is followed by 0.02), and the big
/// one with it.
/// @throws std::invalid_argument  for a small blind that is not above zero, or above the big one
std::vector<BlindLevel> usualLevels(const BlindLevel& first);

/// All levels for people, a line each, with the breaks between them: "1  10/20  10 min", "Break  5 min". The last one tells
/// no length: it goes on.
std::string levelsText(const TourSettings& tour);

}  // namespace poker::holdem
