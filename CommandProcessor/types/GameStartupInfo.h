#pragma once

#include <CommandProcessor/types/ClientTableState.h>

namespace poker {

/// How a tournament's table is set up: what a client needs to open it, before the table itself tells what happens there
/// (SrvTableState).
///
///     the fields of BaseTableState; tournament (32 bits); own seat (byte)
struct COMMANDPROCESSOR_API GameStartupInfo : BaseTableState, Record<GameStartupInfo> {
  std::uint32_t tournamentID = 0;
  SeatID ownSeat;  ///< the one that is kept for this player; none for somebody who looks on

  using Record<GameStartupInfo>::serialize;
  using Record<GameStartupInfo>::deserialize;
  using Record<GameStartupInfo>::visitFields;
  using Record<GameStartupInfo>::assignFields;
  using Record<GameStartupInfo>::fitsOnWire;

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    BaseTableState::fields(self, field);
    field("tournamentID", self.tournamentID);
    field("ownSeat", self.ownSeat);
  }
};

}  // namespace poker
