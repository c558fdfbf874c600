#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/OrEmpty.h>
#include <CommandProcessor/commands/table/SrvUserStateOnTable.h>

namespace poker {

void SrvUserStateOnTable::init(const SeatID& seat, const char* displayName, const RealMoneyType& money,
                               UserState state) {
  initUpdate(seat, false);
  displayName_ = orEmpty(displayName);
  money_ = money;
  state_ = state;
}

void SrvUserStateOnTable::fields(auto& self, auto&& field) {
  SrvTableStateUpdate::fields(self, field);
  field("displayName", self.displayName_);
  field("money", self.money_);
  field("state", self.state_);
}

template class Command<SrvUserStateOnTable, SrvTableStateUpdate>;
template class CachedCmdCreator<SrvUserStateOnTable>;

}  // namespace poker
