#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/lobby/ClRemoveFromWaitList.h>

namespace poker {

void ClRemoveFromWaitList::init(unsigned gameID) {
  clearConnections();
  gameID_ = gameID;
}

void ClRemoveFromWaitList::fields(auto& self, auto&& field) { field("gameID", self.gameID_); }

template class Command<ClRemoveFromWaitList>;
template class CachedCmdCreator<ClRemoveFromWaitList>;

}  // namespace poker
