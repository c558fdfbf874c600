#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/lobby/SrvAddToWaitListError.h>

namespace poker {

void SrvAddToWaitListError::init(unsigned gameID) {
  clearConnections();
  gameID_ = gameID;
}

void SrvAddToWaitListError::fields(auto& self, auto&& field) { SrvCommandGame::fields(self, field); }

template class Command<SrvAddToWaitListError, SrvCommandGame>;
template class CachedCmdCreator<SrvAddToWaitListError>;

}  // namespace poker
