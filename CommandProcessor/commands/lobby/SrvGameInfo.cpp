#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/lobby/SrvGameInfo.h>

namespace poker {

void SrvGameInfo::init(const TableInfoDetailed& info) {
  clearConnections();
  info_ = info;
}

void SrvGameInfo::fields(auto& self, auto&& field) { field("info", self.info_); }

template class Command<SrvGameInfo>;
template class CachedCmdCreator<SrvGameInfo>;

}  // namespace poker
