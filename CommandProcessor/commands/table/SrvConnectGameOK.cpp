#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/SrvConnectGameOK.h>

namespace poker {

void SrvConnectGameOK::init(const COleDateTime& serverTime) {
  clearConnections();
  serverTime_ = serverTime;
}

void SrvConnectGameOK::fields(auto& self, auto&& field) { field("serverTime", self.serverTime_); }

template class Command<SrvConnectGameOK>;
template class CachedCmdCreator<SrvConnectGameOK>;

}  // namespace poker
