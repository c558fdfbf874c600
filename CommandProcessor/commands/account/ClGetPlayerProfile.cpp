#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/ClGetPlayerProfile.h>

namespace poker {

void ClGetPlayerProfile::fields(auto& self, auto&& field) { field("userName", self.text_); }

template class Command<ClGetPlayerProfile,
                       StringCommand<PokerCommandTmpl<ClientMiscCmdProcessorType>, MiscCommandType>>;
template class CachedCmdCreator<ClGetPlayerProfile>;

}  // namespace poker
