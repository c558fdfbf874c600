#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/SrvSitOk.h>

namespace poker {

void SrvSitOk::init(SeatID seat) {
  clearConnections();
  seatID_ = seat;
}

void SrvSitOk::fields(auto& self, auto&& field) { field("seatID", self.seatID_); }

template class Command<SrvSitOk>;
template class CachedCmdCreator<SrvSitOk>;

}  // namespace poker
