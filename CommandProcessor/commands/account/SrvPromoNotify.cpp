#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/SrvPromoNotify.h>

namespace poker {

void SrvPromoNotify::init(NotifyID notifyID, unsigned targetTables, int rest) {
  clearConnections();
  notifyID_ = notifyID;
  targetTables_ = targetTables;
  rest_ = rest;
}

void SrvPromoNotify::fields(auto& self, auto&& field) {
  field("notifyID", self.notifyID_);
  field("targetTables", self.targetTables_);
  field("rest", self.rest_);
}

template class Command<SrvPromoNotify>;
template class CachedCmdCreator<SrvPromoNotify>;

}  // namespace poker
