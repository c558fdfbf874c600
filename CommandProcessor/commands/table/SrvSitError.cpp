#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/SrvSitError.h>

namespace poker {

void SrvSitError::init(SrvErrorCode errorCode, const RealMoneyType& money) {
  clearConnections();
  errorCode_ = errorCode;
  money_ = money;
}

std::string SrvSitError::getErrorMsg(int duration) const { return errorCodeToString(errorCode_, duration, money_); }

void SrvSitError::fields(auto& self, auto&& field) {
  field("errorCode", self.errorCode_);
  field.unless("moneyIsZero", self.money_ == kZeroMoney, [&](auto& part) { part("money", self.money_); });
}

template class Command<SrvSitError>;
template class CachedCmdCreator<SrvSitError>;

}  // namespace poker
