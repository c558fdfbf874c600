#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/ClRplGetHandHistory.h>

namespace poker {

void ClRplGetHandHistory::init(const ReplayRequestInfo& requestInfo) {
  ClMiscUserBased::init();
  requestInfo_ = requestInfo;
}

void ClRplGetHandHistory::fields(auto& self, auto&& field) {
  ClMiscUserBased::fields(self, field);
  field("requestInfo", self.requestInfo_);
}

template class Command<ClRplGetHandHistory, ClMiscUserBased>;
template class CachedCmdCreator<ClRplGetHandHistory>;

}  // namespace poker
