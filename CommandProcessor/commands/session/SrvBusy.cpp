#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/SrvBusy.h>

namespace poker {

void SrvBusy::fields(auto&, auto&&) {}

template class Command<SrvBusy>;
template class CachedCmdCreator<SrvBusy>;

}  // namespace poker
