#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/lobby/SrvServerCountersInfo.h>

namespace poker {

void SrvServerCountersInfo::init() {
  clearConnections();
  counters_.clear();
}

void SrvServerCountersInfo::fields(auto& self, auto&& field) { field("counters", map<std::uint16_t>(self.counters_)); }

template class Command<SrvServerCountersInfo>;
template class CachedCmdCreator<SrvServerCountersInfo>;

}  // namespace poker
