#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/ClSendUserPass.h>

namespace poker {

void ClSendUserPass::init(const char* password) {
  clearConnections();
  password_ = password != nullptr ? password : "";
}

void ClSendUserPass::fields(auto& self, auto&& field) { field("password", secret(self.password_)); }

template class Command<ClSendUserPass>;
template class CachedCmdCreator<ClSendUserPass>;

}  // namespace poker
