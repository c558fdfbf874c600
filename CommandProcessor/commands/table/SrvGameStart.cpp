#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/SrvGameStart.h>

namespace poker {

void SrvGameStart::init(const SeatIDSet& seats) {
  clearConnections();
  seats_ = seats;
}

void SrvGameStart::fields(auto& self, auto&& field) { field("seats", self.seats_); }

template class Command<SrvGameStart>;
template class CachedCmdCreator<SrvGameStart>;

}  // namespace poker
