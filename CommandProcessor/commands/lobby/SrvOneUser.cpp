#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/lobby/SrvOneUser.h>

namespace poker {

void SrvOneUser::init(unsigned gameID) {
  clearConnections();
  gameID_ = gameID;
}

void SrvOneUser::fields(auto& self, auto&& field) {
  field("gameID", as<std::uint16_t>(self.gameID_));  // looks like a slip, but is what peers expect
}

template class Command<SrvOneUser>;
template class CachedCmdCreator<SrvOneUser>;

}  // namespace poker
