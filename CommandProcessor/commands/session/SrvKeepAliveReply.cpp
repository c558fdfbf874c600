#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/SrvKeepAliveReply.h>

namespace poker {

void SrvKeepAliveReply::init(std::uint32_t sequenceNumber) {
  clearConnections();
  sequenceNumber_ = sequenceNumber;
}

void SrvKeepAliveReply::fields(auto& self, auto&& field) { field("sequenceNumber", self.sequenceNumber_); }

template class Command<SrvKeepAliveReply>;
template class CachedCmdCreator<SrvKeepAliveReply>;

}  // namespace poker
