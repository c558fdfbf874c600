#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvUpdateTables.h>

namespace poker {

void SrvUpdateTables::init(const MultiTourTablesInfo& tables, std::uint32_t tourID) {
  clearConnections();
  tables_ = tables;
  tourID_ = tourID;
}

void SrvUpdateTables::fields(auto& self, auto&& field) {
  field("tables", self.tables_);
  field("tourID", self.tourID_);
}

template class Command<SrvUpdateTables>;
template class CachedCmdCreator<SrvUpdateTables>;

}  // namespace poker
