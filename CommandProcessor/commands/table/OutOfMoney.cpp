#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/OutOfMoney.h>

namespace poker {

void OutOfMoney::init(const RealMoneyType& money, SrvErrorCode errorCode) {
  initUpdate(SeatID(), false);
  money_ = money;
  errorCode_ = errorCode;
}

std::string OutOfMoney::err() const { return errorCodeToString(errorCode_, 0, RealMoneyType()); }

void OutOfMoney::fields(auto& self, auto&& field) {
  SrvTableStateUpdate::fields(self, field);
  field("money", self.money_);
  field("errorCode", self.errorCode_);
}

template class Command<OutOfMoney, SrvTableStateUpdate>;
template class CachedCmdCreator<OutOfMoney>;

}  // namespace poker
