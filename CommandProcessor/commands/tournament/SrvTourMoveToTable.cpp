#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvTourMoveToTable.h>

namespace poker {

void SrvTourMoveToTable::init(std::uint32_t tableID) {
  clearConnections();
  tableID_ = tableID;
}

void SrvTourMoveToTable::fields(auto& self, auto&& field) { field("tableID", self.tableID_); }

template class Command<SrvTourMoveToTable>;
template class CachedCmdCreator<SrvTourMoveToTable>;

}  // namespace poker
