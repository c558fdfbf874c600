#pragma once

#include <examples/holdem/server/tournament/TourSettings.h>

#include <chrono>
#include <cstddef>
#include <string_view>

namespace poker::holdem {

/// Bytes of a tournament's description.
inline constexpr std::size_t kLongestTourText = 2000;
/// A tournament opens and starts no later than so long after the server.
inline constexpr std::chrono::hours kLongestWait{30 * 24};

/// A tournament as it is written on the command line, for example "name=Sunday,players=18,start-with=18,buy-in=10+1":
///
///     name          at most kLongestTableName bytes
///     about         a description, kLongestTourText bytes at most; new lines may stand in it
///     game          no-limit or fixed-limit
///     seats         a table, 2 to kMaxSeats
///     players       MIN-MAX, or MAX
///     password      empty for none
///     invited       NAME;NAME;...
///     most-wins     who has won so many tournaments may not play; 0: everybody may
///     opens, start  SECONDS after the server's start
///     start-with    players; 0: at its time alone
///     seating       SECONDS from the draw of the seats to the first hand
///     buy-in        PRICE+FEE, or PRICE without a fee
///     guaranteed    the prize fund, at least
///     prizes        PERCENT;PERCENT;..., of the winner first
///     chips         that everybody starts with
///     blinds        SMALL/BIG, the first level of the usual ones
///     levels        SMALL/BIG;SMALL/BIG;..., all of them
///     level         its length, SECONDSs or COUNThands: 300s, 12hands
///     break         EVERY/SECONDS, after every so many levels; 0/0: none
///     rebuys        COUNT/LEVELS, of a player at most, in the first levels
///     rebuy         PRICE:CHIPS
///     add-on        PRICE:CHIPS
///     reply-time, hand-pause, rebuy-time, absent-time  SECONDS
///
/// in any order, each once at most. Amounts are written as money is, seconds with a fraction where one is wanted.
/// @param usual  has what is not written; without levels there, they are usualLevels() from 10/20 on
/// @throws std::invalid_argument  says what is wrong with the text
TourSettings tourFromText(std::string_view text, const TourSettings& usual);

/// @throws std::invalid_argument  for settings that contradict each other
void checkTour(const TourSettings& tour);

}  // namespace poker::holdem
