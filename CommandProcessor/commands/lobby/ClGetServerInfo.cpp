#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/lobby/ClGetServerInfo.h>

namespace poker {

void ClGetServerInfo::init(std::uint16_t requestedType, std::uint16_t oldType, std::uint32_t version) {
  clearConnections();
  requestedType_ = requestedType;
  oldType_ = oldType;
  version_ = version;
}

void ClGetServerInfo::fields(auto& self, auto&& field) {
  field("requestedType", self.requestedType_);
  field("oldType", self.oldType_);
  field("version", self.version_);
}

template class Command<ClGetServerInfo>;
template class CachedCmdCreator<ClGetServerInfo>;

}  // namespace poker
