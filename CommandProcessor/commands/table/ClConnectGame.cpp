#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/ClConnectGame.h>
#include <CommandProcessor/commands/table/OrEmpty.h>

namespace poker {

void ClConnectGame::init(unsigned gameID, const char* password, const char* clientIP, const char* frID, int size) {
  clearConnections();
  gameID_ = gameID;
  password_ = orEmpty(password);
  clientIP_ = orEmpty(clientIP);
  frID_.assign(frID, frID + (frID != nullptr && size > 0 ? size : 0));
}

void ClConnectGame::fields(auto& self, auto&& field) {
  field("gameID", self.gameID_);
  field("password", secret(self.password_));
  field("clientIP", self.clientIP_);
  field("frID", bytes<std::int32_t>(self.frID_));
}

template class Command<ClConnectGame>;
template class CachedCmdCreator<ClConnectGame>;

}  // namespace poker
