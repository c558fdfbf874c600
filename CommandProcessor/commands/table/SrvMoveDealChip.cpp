#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/SrvMoveDealChip.h>

namespace poker {

void SrvMoveDealChip::init(SeatID seat) { initUpdate(seat, false); }

void SrvMoveDealChip::fields(auto& self, auto&& field) { SrvTableStateUpdate::fields(self, field); }

template class Command<SrvMoveDealChip, SrvTableStateUpdate>;
template class CachedCmdCreator<SrvMoveDealChip>;

}  // namespace poker
