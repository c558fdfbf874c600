#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/ClBye.h>

namespace poker {

void ClBye::fields(auto&, auto&& field) { field.zeros(3); }

template class Command<ClBye>;
template class CachedCmdCreator<ClBye>;

}  // namespace poker
