#pragma once

#include <CommandProcessor/platform/COleDateTime.h>
#include <CommandProcessor/types/DbRecord.h>
#include <CommandProcessor/types/GameType.h>
#include <CommandProcessor/types/SteadyVector.h>
#include <CommandProcessor/types/TourMoneyChooser.h>
#include <CommandProcessor/types/TourNames.h>
#include <CommandProcessor/wire/FlatSet.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace poker {

/// What it costs to take part in a tournament.
///
///     buy-in, fee (TourMoneyChooser); real money (bool); currency (4 raw bytes)
struct COMMANDPROCESSOR_API TourListCost : DbRecord<TourListCost> {
  TourMoneyChooser buyIn;  ///< goes into the prize fund
  TourMoneyChooser fee;    ///< stays with the house
  bool realMoney = false;  ///< false for play money
  /// The letters of the currency's code and zeros behind them ("USD"); all zeros for play money.
  std::array<std::uint8_t, 4> currency{};

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("buyIn", self.buyIn);
    field("fee", self.fee);
    field("realMoney", self.realMoney);
    field("currency", self.currency);
  }
};

/// One tournament as a line of the lobby's list. What the numbers mean beyond this is between server and client; all of
/// them are carried as they are.
///
///     id (32 bits); start (date-time); name, description (strings); TourListCost; prizes (string); game, players, most
///     players (16 bits); table (32 bits); status (byte); skin: size (32 bits, signed) and that many bytes, none when
///     it is below 1; version (32 bits)
struct COMMANDPROCESSOR_API TourListEntry : DbRecord<TourListEntry> {
  std::uint32_t tournamentID = 0;
  COleDateTime starts;  ///< by the server's clock; of no meaning for one that starts when it is full
  std::string name;
  std::string description;
  TourListCost cost;
  std::string prizes;  ///< as the list shows them: "$1,000 guaranteed"
  GameType gameType = GameType::None;
  std::uint16_t players = 0;     ///< those who have registered
  std::uint16_t maxPlayers = 0;  ///< 0 for no limit
  std::uint32_t tableID = 0;     ///< the table of a single-table tournament; 0 for others
  TOUR_NAMES::TourStatus status = TOUR_NAMES::TourStatus::None;
  std::vector<std::uint8_t> skin;  ///< what the client draws this line with; empty for its usual look
  std::uint32_t version = 0;       ///< of the list, when this entry last changed

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("tournamentID", self.tournamentID);
    field("starts", self.starts);
    field("name", self.name);
    field("description", self.description);
    field("cost", self.cost);
    field("prizes", self.prizes);
    field("gameType", self.gameType);
    field("players", self.players);
    field("maxPlayers", self.maxPlayers);
    field("tableID", self.tableID);
    field("status", self.status);
    field("skin", wire::bytes<wire::BelowOneIsNone>(self.skin));
    field("version", self.version);
  }
};

/// What changed in the list of the tournaments of one kind since the version that the client holds.
///
///     announced, registering, running, finished (16 bits); version (32 bits); kind (byte); count (16 bits) and the
///     tournaments; count (16 bits) and the ids of removed ones (32 bits each, ascending)
struct COMMANDPROCESSOR_API TournamentsInfo : DbRecord<TournamentsInfo> {
  // How many tournaments of the kind there are, by how they stand.
  std::uint16_t announced = 0;
  std::uint16_t registering = 0;
  std::uint16_t running = 0;
  std::uint16_t finished = 0;

  std::uint32_t version = 0;  ///< of the list with these changes; the client's next request names it
  TOUR_NAMES::TourType type = TOUR_NAMES::TourType::SingleTable;
  SteadyVector<TourListEntry> tournaments;    ///< those that are new or changed
  FlatSet<std::uint32_t> removedTournaments;  ///< ids

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("announced", self.announced);
    field("registering", self.registering);
    field("running", self.running);
    field("finished", self.finished);
    field("version", self.version);
    field("type", self.type);
    field("tournaments", wire::list<std::uint16_t>(self.tournaments));
    field("removedTournaments", wire::list<std::uint16_t>(self.removedTournaments));
  }
};

}  // namespace poker
