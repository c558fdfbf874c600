#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvTakeSeatInfo.h>

namespace poker {

void SrvTakeSeatInfo::init(const GameStartupInfo& tableInfo) {
  clearConnections();
  tableInfo_ = tableInfo;
}

void SrvTakeSeatInfo::fields(auto& self, auto&& field) { field("tableInfo", self.tableInfo_); }

template class Command<SrvTakeSeatInfo>;
template class CachedCmdCreator<SrvTakeSeatInfo>;

}  // namespace poker
