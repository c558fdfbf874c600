#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/SrvTableState.h>

namespace poker {

void SrvTableState::init(const ClientTableState& state) {
  clearConnections();
  state_ = state;
}

void SrvTableState::fields(auto& self, auto&& field) { field("state", self.state_); }

template class Command<SrvTableState>;
template class CachedCmdCreator<SrvTableState>;

}  // namespace poker
