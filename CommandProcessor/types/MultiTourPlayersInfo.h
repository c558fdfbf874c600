#pragma once

#include <CommandProcessor/types/SteadyVector.h>
#include <CommandProcessor/types/TourPlayerEntry.h>
#include <CommandProcessor/wire/FlatSet.h>

#include <cstdint>
#include <string>

namespace poker {

/// A player of a multi-table tournament and where it sits.
///
///     table (32 bits); TourPlayerEntry
struct COMMANDPROCESSOR_API MultiTourPlayerEntry : DbRecord<MultiTourPlayerEntry> {
  std::uint32_t tableID = 0;  ///< 0 before the seats are drawn
  TourPlayerEntry player;

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("tableID", self.tableID);
    field("player", self.player);
  }
};

/// The players of a multi-table tournament: all of them, or what changed since the version that the client holds.
///
///     count of players, count of removed players (32 bits); the players; names of removed players (strings, ascending
///     by their bytes); version (32 bits)
struct COMMANDPROCESSOR_API MultiTourPlayersInfo : DbRecord<MultiTourPlayersInfo> {
  SteadyVector<MultiTourPlayerEntry> players;  ///< those that are new or changed
  FlatSet<std::string> removedPlayers;         ///< names of those who unregistered or are out
  std::uint32_t version = 0;                   ///< the client's next request names it

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    auto players = wire::counted<std::uint32_t>(self.players);
    auto removedPlayers = wire::counted<std::uint32_t>(self.removedPlayers);
    field("playerCount", players.count());
    field("removedPlayerCount", removedPlayers.count());
    field("players", players);
    field("removedPlayers", removedPlayers);
    field("version", self.version);
  }
};

}  // namespace poker
