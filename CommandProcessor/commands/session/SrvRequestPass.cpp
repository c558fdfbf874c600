#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/SrvRequestPass.h>

namespace poker {

void SrvRequestPass::fields(auto&, auto&&) {}

template class Command<SrvRequestPass>;
template class CachedCmdCreator<SrvRequestPass>;

}  // namespace poker
