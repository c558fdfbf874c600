#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/SrvForward.h>

namespace poker {

void SrvForward::fields(auto&, auto&&) {}

template class Command<SrvForward>;
template class CachedCmdCreator<SrvForward>;

}  // namespace poker
