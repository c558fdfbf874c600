#pragma once

#include <examples/holdem/client/lobby/LobbyPicture.h>

#include <string>
#include <vector>

namespace poker::holdem {

// The lobby for people, in lines without their ends, and for programs, in one line of JSON. What others wrote is escaped.

/// The list of tables, the counters, the news. Names are cut so that a line of the list has 80 columns, if that is enough.
std::vector<std::string> lobbyText(const LobbyPicture& picture);
/// What one table is, its players, who waits.
std::vector<std::string> detailsText(const TableInfoDetailed& details);
/// Who has left the table or its queue from one description to the next, a line each.
std::vector<std::string> departures(const TableInfoDetailed& before, const TableInfoDetailed& now);

/// The fields of SrvServerInfo, SrvServerCountersInfo and SrvNews in one object: all tables, and none that were removed.
std::string lobbyJson(const LobbyPicture& picture);
/// The fields of SrvGameInfo.
std::string detailsJson(const TableInfoDetailed& details);

}  // namespace poker::holdem
