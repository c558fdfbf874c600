#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/ClMoveMe2MyTable.h>

namespace poker {

void ClMoveMe2MyTable::init(std::uint32_t tournamentId, std::uint32_t tableID) {
  clearConnections();
  tournamentId_ = tournamentId;
  tableID_ = tableID;
}

void ClMoveMe2MyTable::fields(auto& self, auto&& field) {
  field("tournamentId", self.tournamentId_);
  field("tableID", self.tableID_);
}

template class Command<ClMoveMe2MyTable, ClientTourCommandBase>;
template class CachedCmdCreator<ClMoveMe2MyTable>;

}  // namespace poker
