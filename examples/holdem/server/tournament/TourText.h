#pragma once

#include <examples/holdem/server/tournament/TourSettings.h>

#include <string_view>

namespace poker::holdem {

/// Reads what the server's --tournament option takes. What is not said there is as in `usual`; without levels, usualLevels().
/// @throws std::invalid_argument  for a text that is no tournament, with what is wrong in it
TourSettings tourFromText(std::string_view text, const TourSettings& usual);

/// @throws std::invalid_argument  for settings that contradict each other
void checkTour(const TourSettings& tour);

}  // namespace poker::holdem
