#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/ClGetTourTableInfo.h>

namespace poker {

void ClGetTourTableInfo::init(std::uint32_t tournamentId, std::uint32_t table) {
  clearConnections();
  tournamentId_ = tournamentId;
  table_ = table;
}

void ClGetTourTableInfo::fields(auto& self, auto&& field) {
  field("tournamentId", self.tournamentId_);
  field("table", self.table_);
}

template class Command<ClGetTourTableInfo, ClientTourCommandBase>;
template class CachedCmdCreator<ClGetTourTableInfo>;

}  // namespace poker
