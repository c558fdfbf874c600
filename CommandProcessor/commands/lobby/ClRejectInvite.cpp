#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/lobby/ClRejectInvite.h>

namespace poker {

void ClRejectInvite::init(unsigned gameID, const std::string& reserveID) {
  clearConnections();
  gameID_ = gameID;
  reserveID_ = reserveID;
}

void ClRejectInvite::fields(auto& self, auto&& field) {
  // The other way round than in ClAcceptInvite; peers expect it so.
  field("reserveID", self.reserveID_);
  field("gameID", self.gameID_);
}

template class Command<ClRejectInvite>;
template class CachedCmdCreator<ClRejectInvite>;

}  // namespace poker
