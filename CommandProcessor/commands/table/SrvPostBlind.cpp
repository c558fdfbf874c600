#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/SrvPostBlind.h>

namespace poker {

void SrvPostBlind::init(SeatID seat, unsigned blind) {
  initUpdate(seat, false);
  blind_ = blind;
}

void SrvPostBlind::fields(auto& self, auto&& field) {
  SrvTableStateUpdate::fields(self, field);
  field("blind", self.blind_);
}

template class Command<SrvPostBlind, SrvTableStateUpdate>;
template class CachedCmdCreator<SrvPostBlind>;

}  // namespace poker
