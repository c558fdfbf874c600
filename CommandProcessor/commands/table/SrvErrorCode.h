#pragma once

#include <CommandProcessor/platform/Export.h>
#include <CommandProcessor/types/RealMoneyType.h>

#include <cstdint>
#include <string>

namespace poker {

/// Why a player does not get a seat or cannot stay. Travels as 32 bits; values without a name are carried as they are.
enum class SrvErrorCode : std::uint32_t {
  SeatTaken = 0,
  NotEnoughMoney = 1,
  NoRealMoneyAccount = 2,
  NotAllowed = 3,
  ParticipationLimit = 4,  ///< plays in too many tournaments
  WonTournamentsLimit = 5,
  NotEnoughForTournament = 6,
  InternalError = 7,
  RebuyTooLarge = 8,
  TournamentNotAllowed = 9,
  LessThanLastSitting = 10,
  NoReservedSeat = 13,
  NotAllowedHere = 14,
  ExactMoneyRequired = 15,  ///< must bring what the last sitting ended with
};

/// What the player is told: one line, or several with "\n" between them.
/// @param duration  seconds that must pass between two sittings; below 1 counts as 1800
/// @param money     what the player had at the last sitting
COMMANDPROCESSOR_API std::string errorCodeToString(SrvErrorCode code, std::int32_t duration,
                                                   const RealMoneyType& money);

}  // namespace poker
