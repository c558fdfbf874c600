#pragma once

#include <CommandProcessor/types/ClientTableState.h>
#include <CommandProcessor/types/SteadyVector.h>

#include <string>

namespace poker {

/// A player as the lobby shows it.
struct COMMANDPROCESSOR_API TablePlayerInfo : Record<TablePlayerInfo> {
  SeatID seatID;
  std::string displayName;
  RealMoneyType money;  ///< the stack, with what lies before the player
  UserState state = UserState::Empty;

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("seatID", self.seatID);
    field("displayName", self.displayName);
    field("money", self.money);
    field("state", self.state);
  }
};

/// Everything that the lobby shows about the one table that its user looks at.
///
///     the fields of BaseTableState; version, tournament (32 bits); password protected (bool); hand (64 bits); average pot
///     (money); players a flop (byte); hands an hour, observers (32 bits); count of players (byte) and the players; count of
///     those who wait (16 bits) and their names
struct COMMANDPROCESSOR_API TableInfoDetailed : BaseTableState, Record<TableInfoDetailed> {
  std::uint32_t version = 0;       ///< of this description; the client's next request names it
  std::uint32_t tournamentID = 0;  ///< 0 for a table of no tournament
  bool passwordProtected = false;
  std::uint64_t handNumber = 0;  ///< 0 between hands
  RealMoneyType averagePot;
  std::uint8_t playersPerFlop = 0;  ///< percent of those who were dealt in
  std::uint32_t handsPerHour = 0;
  std::uint32_t observers = 0;
  SteadyVector<TablePlayerInfo> players;  ///< by seat, ascending
  SteadyVector<std::string> waitList;     ///< display names, the next one first

  using Record<TableInfoDetailed>::serialize;
  using Record<TableInfoDetailed>::deserialize;
  using Record<TableInfoDetailed>::visitFields;
  using Record<TableInfoDetailed>::assignFields;
  using Record<TableInfoDetailed>::fitsOnWire;

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    BaseTableState::fields(self, field);
    field("version", self.version);
    field("tournamentID", self.tournamentID);
    field("passwordProtected", self.passwordProtected);
    field("handNumber", self.handNumber);
    field("averagePot", self.averagePot);
    field("playersPerFlop", self.playersPerFlop);
    field("handsPerHour", self.handsPerHour);
    field("observers", self.observers);
    field("players", wire::list<std::uint8_t>(self.players));
    field("waitList", wire::list<std::uint16_t>(self.waitList));
  }
};

}  // namespace poker
