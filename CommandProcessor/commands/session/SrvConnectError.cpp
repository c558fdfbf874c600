#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/SrvConnectError.h>

namespace poker {

void SrvConnectError::fields(auto&, auto&& field) { field.zeros(3); }

template class Command<SrvConnectError>;
template class CachedCmdCreator<SrvConnectError>;

}  // namespace poker
