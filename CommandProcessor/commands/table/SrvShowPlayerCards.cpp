#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/SrvShowPlayerCards.h>

namespace poker {

void SrvShowPlayerCards::init(SeatID seat, const CardVector& cards) {
  clearConnections();
  cards_ = cards;
  seatID_ = seat;
}

void SrvShowPlayerCards::fields(auto& self, auto&& field) {
  field("cards", self.cards_);
  field("seatID", self.seatID_);
}

template class Command<SrvShowPlayerCards>;
template class CachedCmdCreator<SrvShowPlayerCards>;

}  // namespace poker
