#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/ClMiscGetPromoInfo.h>

namespace poker {

template class Command<ClMiscGetPromoInfo>;
template class CachedCmdCreator<ClMiscGetPromoInfo>;

}  // namespace poker
