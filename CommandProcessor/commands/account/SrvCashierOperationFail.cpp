#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/SrvCashierOperationFail.h>

namespace poker {

void SrvCashierOperationFail::fields(auto& self, auto&& field) { field("message", self.text_); }

template class Command<SrvCashierOperationFail, StringCommand<PokerCommandTmpl<SrvCmdProcessorType>, CommandType>>;
template class CachedCmdCreator<SrvCashierOperationFail>;

}  // namespace poker
