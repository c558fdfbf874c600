#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/SrvPlayerLeave.h>

namespace poker {

void SrvPlayerLeave::init(unsigned gameID, unsigned playersLeft) {
  clearConnections();
  gameID_ = gameID;
  playersLeft_ = playersLeft;
}

void SrvPlayerLeave::fields(auto& self, auto&& field) {
  field("gameID", self.gameID_);
  field("playersLeft", as<std::uint8_t>(self.playersLeft_));
}

template class Command<SrvPlayerLeave>;
template class CachedCmdCreator<SrvPlayerLeave>;

}  // namespace poker
