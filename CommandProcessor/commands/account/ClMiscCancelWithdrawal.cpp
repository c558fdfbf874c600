#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/ClMiscCancelWithdrawal.h>

namespace poker {

void ClMiscCancelWithdrawal::init(std::uint32_t transactionID, const RealMoneyType& amount) {
  clearConnections();
  transactionID_ = transactionID;
  amount_ = amount;
}

void ClMiscCancelWithdrawal::fields(auto& self, auto&& field) {
  field("transactionID", self.transactionID_);
  field("amount", self.amount_);
}

template class Command<ClMiscCancelWithdrawal>;
template class CachedCmdCreator<ClMiscCancelWithdrawal>;

}  // namespace poker
