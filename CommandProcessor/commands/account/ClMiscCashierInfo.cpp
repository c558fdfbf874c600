#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/ClMiscCashierInfo.h>

namespace poker {

void ClMiscCashierInfo::fields(auto& self, auto&& field) { ClMiscUserBased::fields(self, field); }

template class Command<ClMiscCashierInfo, ClMiscUserBased>;
template class CachedCmdCreator<ClMiscCashierInfo>;

}  // namespace poker
