#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/ClBuyChips.h>

namespace poker {

void ClBuyChips::fields(auto&, auto&&) {}

template class Command<ClBuyChips>;
template class CachedCmdCreator<ClBuyChips>;

}  // namespace poker
