#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/ClMiscDumpManager.h>

namespace poker {

template class Command<ClMiscDumpManager>;
template class CachedCmdCreator<ClMiscDumpManager>;

}  // namespace poker
