#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/ClMoreMoney.h>

namespace poker {

void ClMoreMoney::init(const RealMoneyType& money) {
  clearConnections();
  money_ = money;
}

void ClMoreMoney::fields(auto& self, auto&& field) { field("money", self.money_); }

template class Command<ClMoreMoney>;
template class CachedCmdCreator<ClMoreMoney>;

}  // namespace poker
