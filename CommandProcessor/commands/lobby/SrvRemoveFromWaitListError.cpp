#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/lobby/SrvRemoveFromWaitListError.h>

namespace poker {

void SrvRemoveFromWaitListError::init(unsigned gameID) {
  clearConnections();
  gameID_ = gameID;
}

void SrvRemoveFromWaitListError::fields(auto& self, auto&& field) { SrvCommandGame::fields(self, field); }

template class Command<SrvRemoveFromWaitListError, SrvCommandGame>;
template class CachedCmdCreator<SrvRemoveFromWaitListError>;

}  // namespace poker
