#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/SrvHandShaked.h>

namespace poker {

void SrvHandShaked::fields(auto&, auto&&) {}

template class Command<SrvHandShaked>;
template class CachedCmdCreator<SrvHandShaked>;

}  // namespace poker
