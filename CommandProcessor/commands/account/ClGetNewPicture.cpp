#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/ClGetNewPicture.h>

namespace poker {

void ClGetNewPicture::fields(auto& self, auto&& field) { field("userName", self.text_); }

template class Command<ClGetNewPicture, StringCommand<PokerCommandTmpl<ClientMiscCmdProcessorType>, MiscCommandType>>;
template class CachedCmdCreator<ClGetNewPicture>;

}  // namespace poker
