#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/ClGetMoney.h>

namespace poker {

void ClGetMoney::fields(auto&, auto&&) {}

template class Command<ClGetMoney>;
template class CachedCmdCreator<ClGetMoney>;

}  // namespace poker
