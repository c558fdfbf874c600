#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/session/SrvEmailValidated.h>

namespace poker {

void SrvEmailValidated::fields(auto& self, auto&& field) { field("email", self.text_); }

template class Command<SrvEmailValidated, StringCommand<PokerCommandTmpl<SrvCmdProcessorType>, CommandType>>;
template class CachedCmdCreator<SrvEmailValidated>;

}  // namespace poker
