#pragma once

#include <examples/holdem/server/tournament/TourSettings.h>

#include <string>
#include <vector>

namespace poker::holdem {

/// Levels that begin with these blinds and grow by a third to a half each, in round numbers, until the big blind is ten
/// thousand times the first.
std::vector<BlindLevel> usualLevels(const BlindLevel& first);

/// All levels for people, a line each, with the breaks between them: "1  10/20  10 min".
std::string levelsText(const TourSettings& tour);

}  // namespace poker::holdem
