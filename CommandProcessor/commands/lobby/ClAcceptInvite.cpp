#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/lobby/ClAcceptInvite.h>

namespace poker {

void ClAcceptInvite::init(unsigned gameID, const std::string& reserveID, const RealMoneyType& money) {
  clearConnections();
  gameID_ = gameID;
  reserveID_ = reserveID;
  money_ = money;
}

void ClAcceptInvite::fields(auto& self, auto&& field) {
  field("gameID", self.gameID_);
  field("reserveID", self.reserveID_);
  field("money", self.money_);
}

template class Command<ClAcceptInvite>;
template class CachedCmdCreator<ClAcceptInvite>;

}  // namespace poker
