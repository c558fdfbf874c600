#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/SrvMoveKillButton.h>

namespace poker {

void SrvMoveKillButton::init(const SeatID& seat) {
  clearConnections();
  seatID_ = seat;
}

void SrvMoveKillButton::fields(auto& self, auto&& field) { field("seatID", self.seatID_); }

template class Command<SrvMoveKillButton>;
template class CachedCmdCreator<SrvMoveKillButton>;

}  // namespace poker
