#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/tournament/ClientTourCommandBase.h>

#include <cstdint>

namespace poker {

/// A player asks to be taken to its table of a tournament. Answered by SrvTourMoveToTable.
class COMMANDPROCESSOR_API ClMoveMe2MyTable final : public Command<ClMoveMe2MyTable, ClientTourCommandBase> {
 public:
  /// @param tableID  the table that the client shows
  void init(std::uint32_t tournamentId, std::uint32_t tableID);

  std::uint32_t tableID() const { return tableID_; }

 private:
  friend FieldAccess;
  ClMoveMe2MyTable() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t tableID_ = 0;
};

}  // namespace poker
