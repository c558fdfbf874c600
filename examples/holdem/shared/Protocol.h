#pragma once

#include <CommandProcessor/commands/session/SrvMaintenance.h>

#include <cstdint>

namespace poker::holdem {

/// What the example's server and client have agreed on and the commands only carry.

/// The protocol version of ClHandShake that this build speaks.
inline constexpr std::uint32_t kProtocolVersion = 12;
/// The oldest one that the server still takes, unless it is told otherwise.
inline constexpr std::uint32_t kOldestVersion = 10;

/// Maintenance is coming; the session goes on.
inline constexpr MaintainID kMaintenanceAnnounced{1};
/// Maintenance begins: the server ends the session soon, and takes no new one.
inline constexpr MaintainID kMaintenanceBegins{2};

/// The hint of SrvUpdateHintText that is the number of the table's hand, in digits.
inline constexpr unsigned kHandNumberHint = 1;

/// The lists of tables that ClGetServerInfo asks for.
inline constexpr std::uint16_t kNoList = 0;
inline constexpr std::uint16_t kRingGames = 1;

/// The keys of SrvServerCountersInfo.
inline constexpr std::uint8_t kPlayersLoggedOn = 1;
inline constexpr std::uint8_t kPlayersSeated = 2;
inline constexpr std::uint8_t kTables = 3;
inline constexpr std::uint8_t kTablesPlaying = 4;  ///< at which a hand is on
inline constexpr std::uint8_t kHandsPlayed = 5;    ///< since the server began

}  // namespace poker::holdem
