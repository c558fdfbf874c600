#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/SrvMaintenance.h>

namespace poker {

void SrvMaintenance::init(std::string_view message, MaintainID id) {
  clearConnections();
  message_ = message;
  id_ = id;
}

void SrvMaintenance::fields(auto& self, auto&& field) {
  field("message", self.message_);
  field("maintainID", self.id_);
}

template class Command<SrvMaintenance>;
template class CachedCmdCreator<SrvMaintenance>;

}  // namespace poker
