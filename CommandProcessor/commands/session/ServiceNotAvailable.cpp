#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/ServiceNotAvailable.h>

namespace poker {

void ServiceNotAvailable::init(const char* newServer) {
  clearConnections();
  newServer_ = newServer != nullptr ? newServer : "";
}

void ServiceNotAvailable::fields(auto& self, auto&& field) { field("newServer", self.newServer_); }

template class Command<ServiceNotAvailable>;
template class CachedCmdCreator<ServiceNotAvailable>;

}  // namespace poker
