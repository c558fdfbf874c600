#pragma once

#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/types/SteadyVector.h>
#include <CommandProcessor/types/TourPlayerEntry.h>

#include <string>

namespace poker {

/// A player of a tournament with its money.
///
///     TourPlayerEntry; money
struct COMMANDPROCESSOR_API TourPlayerMoneyEntry : DbRecord<TourPlayerMoneyEntry> {
  TourPlayerEntry player;
  RealMoneyType money;  ///< the chips; once the tournament has finished, the prize

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("player", self.player);
    field("money", self.money);
  }
};

/// What the lobby shows about the one tournament that its user looks at.
///
///     description (string); count of players (16 bits); finished (bool); version (32 bits); the players
struct COMMANDPROCESSOR_API TournamentDetailedInfo : DbRecord<TournamentDetailedInfo> {
  std::string description;    ///< several lines with "\n" between them
  bool finished = false;      ///< the players' money is what they have won
  std::uint32_t version = 0;  ///< of these details; the client's next request names it
  SteadyVector<TourPlayerMoneyEntry> players;

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    auto players = wire::counted<std::uint16_t>(self.players);
    field("description", self.description);
    field("playerCount", players.count());
    field("finished", self.finished);
    field("version", self.version);
    field("players", players);
  }
};

}  // namespace poker
