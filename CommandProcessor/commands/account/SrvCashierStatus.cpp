#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/SrvCashierStatus.h>

namespace poker {

void SrvCashierStatus::aboutToSerialize(SerializeCommandBuf& buf) const { buf.setMark(); }

void SrvCashierStatus::fields(auto& self, auto&& field) { SrvUnknownValues::fields(self, field); }

template class Command<SrvCashierStatus, SrvUnknownValues>;
template class CachedCmdCreator<SrvCashierStatus>;

}  // namespace poker
