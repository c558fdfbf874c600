#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/SrvUserTurn.h>

namespace poker {

void SrvUserTurn::init(SeatID seat, bool notify, const NextTurnOptions& turns, unsigned replyTimeout) {
  initUpdate(seat, notify);
  turns_ = turns;
  replyTimeout_ = static_cast<std::uint8_t>(replyTimeout);
}

void SrvUserTurn::fields(auto& self, auto&& field) {
  SrvTableStateUpdate::fields(self, field);
  field("turns", self.turns_);
  field("replyTimeout", self.replyTimeout_);
}

template class Command<SrvUserTurn, SrvTableStateUpdate>;
template class CachedCmdCreator<SrvUserTurn>;

}  // namespace poker
