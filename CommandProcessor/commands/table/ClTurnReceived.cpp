#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/ClTurnReceived.h>

namespace poker {

void ClTurnReceived::fields(auto&, auto&&) {}

template class Command<ClTurnReceived>;
template class CachedCmdCreator<ClTurnReceived>;

}  // namespace poker
