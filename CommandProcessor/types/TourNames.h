#pragma once

#include <cstdint>

/// What is said of tournaments: their kinds, how they stand and how their levels follow each other.
namespace poker::TOUR_NAMES {

/// Travels as one byte; values without a name are carried as they are.
enum class TourType : std::uint8_t {
  None = 0,
  SingleTable = 1,  ///< starts as soon as its one table is full
  MultiTable = 2,   ///< starts at its time, with as many tables as its players need
};

/// How a tournament stands. Travels as one byte; values without a name are carried as they are.
enum class TourStatus : std::uint8_t {
  None = 0,
  Announced = 1,    ///< stands in the list; nobody can register yet
  Registering = 2,  ///< not started: players register
  Prestarted = 3,   ///< players take their seats
  Started = 4,
  Suspended = 5,
  Finished = 6,
};

/// What ends a level. Travels as 32 bits; values without a name are carried as they are.
enum class SwitchType : std::uint32_t {
  ByTime = 0,   ///< seconds
  ByHands = 1,  ///< hands that the table has played
};

}  // namespace poker::TOUR_NAMES
