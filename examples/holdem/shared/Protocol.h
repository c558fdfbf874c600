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

}  // namespace poker::holdem
