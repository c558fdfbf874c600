#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/ClMiscForgotPass.h>

namespace poker {

void ClMiscForgotPass::fields(auto& self, auto&& field) { field("userName", self.text_); }

template class Command<ClMiscForgotPass, StringCommand<PokerCommandTmpl<ClientMiscCmdProcessorType>, MiscCommandType>>;
template class CachedCmdCreator<ClMiscForgotPass>;

}  // namespace poker
