#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/SrvBackOnSeatOk.h>

namespace poker {

void SrvBackOnSeatOk::init(SeatID seat) {
  clearConnections();
  seatID_ = seat;
}

void SrvBackOnSeatOk::fields(auto& self, auto&& field) { field("seatID", self.seatID_); }

template class Command<SrvBackOnSeatOk>;
template class CachedCmdCreator<SrvBackOnSeatOk>;

}  // namespace poker
