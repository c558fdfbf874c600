#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/ClBack.h>

namespace poker {

void ClBack::fields(auto&, auto&&) {}

template class Command<ClBack>;
template class CachedCmdCreator<ClBack>;

}  // namespace poker
