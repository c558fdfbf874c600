#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/SrvTransHistory.h>

namespace poker {

void SrvTransHistory::init() {
  clearConnections();
  transactions_.clear();
}

void SrvTransHistory::add(const CashierTransaction& transaction) { transactions_.push_back(transaction); }

void SrvTransHistory::fields(auto& self, auto&& field) {
  field("transactions", list<std::uint32_t>(self.transactions_));
}

template class Command<SrvTransHistory>;
template class CachedCmdCreator<SrvTransHistory>;

}  // namespace poker
