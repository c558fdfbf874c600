#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/ClMiscGetCreditCardInfo.h>

namespace poker {

void ClMiscGetCreditCardInfo::fields(auto& self, auto&& field) { ClMiscUserBased::fields(self, field); }

template class Command<ClMiscGetCreditCardInfo, ClMiscUserBased>;
template class CachedCmdCreator<ClMiscGetCreditCardInfo>;

}  // namespace poker
