#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/lobby/SrvServerInfo.h>

namespace poker {

void SrvServerInfo::init(const ServerUpdateInfo& info) {
  clearConnections();
  info_ = info;
}

void SrvServerInfo::fields(auto& self, auto&& field) { field("info", self.info_); }

template class Command<SrvServerInfo>;
template class CachedCmdCreator<SrvServerInfo>;

}  // namespace poker
