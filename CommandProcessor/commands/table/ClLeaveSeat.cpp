#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/ClLeaveSeat.h>

namespace poker {

void ClLeaveSeat::fields(auto&, auto&&) {}

template class Command<ClLeaveSeat>;
template class CachedCmdCreator<ClLeaveSeat>;

}  // namespace poker
