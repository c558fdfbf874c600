#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/lobby/SrvWaitList.h>

namespace poker {

void SrvWaitList::init(unsigned gameID, const std::string& reserveID) {
  clearConnections();
  gameID_ = gameID;
  reserveID_ = reserveID;
}

void SrvWaitList::fields(auto& self, auto&& field) {
  field("gameID", self.gameID_);
  field("reserveID", self.reserveID_);
}

template class Command<SrvWaitList>;
template class CachedCmdCreator<SrvWaitList>;

}  // namespace poker
