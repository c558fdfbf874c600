#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/lobby/SrvAddToWaitListOk.h>

namespace poker {

void SrvAddToWaitListOk::init(unsigned gameID) {
  clearConnections();
  gameID_ = gameID;
}

void SrvAddToWaitListOk::fields(auto& self, auto&& field) { SrvCommandGame::fields(self, field); }

template class Command<SrvAddToWaitListOk, SrvCommandGame>;
template class CachedCmdCreator<SrvAddToWaitListOk>;

}  // namespace poker
