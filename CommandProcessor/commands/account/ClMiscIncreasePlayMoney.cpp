#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/ClMiscIncreasePlayMoney.h>

namespace poker {

template class Command<ClMiscIncreasePlayMoney>;
template class CachedCmdCreator<ClMiscIncreasePlayMoney>;

}  // namespace poker
