#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/lobby/ClAddToWaitList.h>

namespace poker {

void ClAddToWaitList::fields(auto& self, auto&& field) { field("gameID", self.number_); }

template class Command<ClAddToWaitList, NumberCommand<PokerCommandTmpl<ClientCmdProcessorType>>>;
template class CachedCmdCreator<ClAddToWaitList>;

}  // namespace poker
