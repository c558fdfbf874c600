#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/lobby/ClGetGameInfo.h>

namespace poker {

void ClGetGameInfo::init(unsigned gameID, unsigned oldGameID, std::uint32_t version) {
  clearConnections();
  gameID_ = gameID;
  oldGameID_ = oldGameID;
  version_ = version;
}

void ClGetGameInfo::fields(auto& self, auto&& field) {
  field("gameID", self.gameID_);
  field("oldGameID", self.oldGameID_);
  field("version", self.version_);
}

template class Command<ClGetGameInfo>;
template class CachedCmdCreator<ClGetGameInfo>;

}  // namespace poker
