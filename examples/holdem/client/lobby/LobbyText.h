#pragma once

#include <examples/holdem/client/lobby/LobbyPicture.h>

#include <string>
#include <vector>

namespace poker::holdem {

// The lobby for people, in lines without their ends, and for programs, in one line of JSON. What others wrote is escaped.

/// The list of tables, the counters, the news.
std::vector<std::string> lobbyText(const LobbyPicture& picture);
/// What one table is, its players, who waits.
std::vector<std::string> detailsText(const TableInfoDetailed& details);

/// The fields of SrvServerInfo, SrvServerCountersInfo and SrvNews in one object: all tables, and none that were removed.
std::string lobbyJson(const LobbyPicture& picture);
/// The fields of SrvGameInfo.
std::string detailsJson(const TableInfoDetailed& details);

}  // namespace poker::holdem
