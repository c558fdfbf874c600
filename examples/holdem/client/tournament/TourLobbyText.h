#pragma once

#include <CommandProcessor/commands/AllCommands.h>
#include <examples/holdem/client/tournament/TourPicture.h>

#include <string>
#include <vector>

namespace poker::holdem {

// Tournaments for people, in lines without their ends. What others wrote is escaped.

/// "registering", "started", ...
std::string statusText(TOUR_NAMES::TourStatus status);
/// What is said of a level that begins or is next: "level 3: blinds 30/60, the next one in 10 min".
/// @param limit  that the tournament plays; None when that is not known
std::string levelText(const SrvLevelSwitch& level, LimitType limit);
/// The answer of the house in one line, whatever its lines were.
std::string inOneLine(std::string text);

/// All tournaments by number, a line each below the head.
std::vector<std::string> tourListText(const std::vector<const TourListPicture*>& lists);
/// Whether the tournament has finished without places and prizes.
bool isCalledOff(const TourPicture& picture);
/// What it costs to take part: "cost: buy-in 50 · fee 5 · total 55".
std::string costText(const SrvTourMoney& cost);
/// What one tournament is and where it stands: texts, levels, prizes, fund, tables, players.
std::vector<std::string> tourText(const TourListEntry& entry, const TourPicture& picture,
                                  const TournamentDetailedInfo& details, const std::string& cost);
/// The places and prizes of one that has finished.
std::vector<std::string> placesText(const TournamentDetailedInfo& details);
/// Who has the most: "Ann 5200 · Ben 4100".
std::string leadersText(const TournamentDetailedInfo& details);
/// Who has the most at a table, and how the places there are taken.
struct TableLeaders {
  std::string first;  ///< the player who has more than all others; empty for none
  std::string text;   ///< "table 3: Ann 5200 · Ben 4100"
};
TableLeaders tableLeaders(const SrvUpdatePlayersMoney& chips);
/// What is new from one summary to the next: who registers, tables, re-buys, add-ons.
std::vector<std::string> changesText(const MultiTourneyInfo& before, const MultiTourneyInfo& now);
/// What became of players: who registers, who sits where, who goes, and with which place.
/// @param hasBegun  who goes is out
std::vector<std::string> playersText(const TourPicture::Players& before, const TourPicture::Players& now,
                                     bool hasBegun);

}  // namespace poker::holdem
