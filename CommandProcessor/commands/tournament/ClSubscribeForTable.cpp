#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/ClSubscribeForTable.h>

namespace poker {

void ClSubscribeForTable::init(const std::uint32_t& subscribedTable, const std::uint32_t& tournamentId) {
  clearConnections();
  subscribedTable_ = subscribedTable;
  tournamentId_ = tournamentId;
}

void ClSubscribeForTable::fields(auto& self, auto&& field) {
  field("subscribedTable", self.subscribedTable_);
  field("tournamentId", self.tournamentId_);
}

template class Command<ClSubscribeForTable, ClientTourCommandBase>;
template class CachedCmdCreator<ClSubscribeForTable>;

}  // namespace poker
