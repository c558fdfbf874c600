#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/ClMiscSendTourInfo.h>

namespace poker {

template class Command<ClMiscSendTourInfo>;
template class CachedCmdCreator<ClMiscSendTourInfo>;

}  // namespace poker
