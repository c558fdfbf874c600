#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/SrvUserActionNotify.h>

namespace poker {

void SrvUserActionNotify::init(SeatID seat, UserAction action, const RealMoneyType& freeMoney,
                               const RealMoneyType& tableMoney, unsigned char raisesLeft) {
  initUpdate(seat, true);
  action_ = action;
  freeMoney_ = freeMoney;
  tableMoney_ = tableMoney;
  raisesLeft_ = raisesLeft;
}

void SrvUserActionNotify::fields(auto& self, auto&& field) {
  SrvTableStateUpdate::fields(self, field);
  field("action", self.action_);
  field("freeMoney", self.freeMoney_);
  field("tableMoney", self.tableMoney_);
  field("raisesLeft", self.raisesLeft_);
}

template class Command<SrvUserActionNotify, SrvTableStateUpdate>;
template class CachedCmdCreator<SrvUserActionNotify>;

}  // namespace poker
