#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/lobby/SrvRemoveFromWaitListOk.h>

namespace poker {

void SrvRemoveFromWaitListOk::init(unsigned gameID) {
  clearConnections();
  gameID_ = gameID;
}

void SrvRemoveFromWaitListOk::fields(auto& self, auto&& field) { SrvCommandGame::fields(self, field); }

template class Command<SrvRemoveFromWaitListOk, SrvCommandGame>;
template class CachedCmdCreator<SrvRemoveFromWaitListOk>;

}  // namespace poker
