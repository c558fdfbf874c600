#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/ClKeepAlive.h>

namespace poker {

void ClKeepAlive::init(std::uint32_t sequenceNumber) {
  clearConnections();
  sequenceNumber_ = sequenceNumber;
}

void ClKeepAlive::fields(auto& self, auto&& field) { field("sequenceNumber", self.sequenceNumber_); }

template class Command<ClKeepAlive>;
template class CachedCmdCreator<ClKeepAlive>;

}  // namespace poker
