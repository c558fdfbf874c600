#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/ClActionInAdvance.h>

namespace poker {

void ClActionInAdvance::init(unsigned actions, const RealMoneyType& amount, bool onOff) {
  clearConnections();
  actions_ = actions;
  onOff_ = onOff;
  amount_ = amount;
}

void ClActionInAdvance::fields(auto& self, auto&& field) {
  field("actions", self.actions_);
  field("onOff", self.onOff_);
  field("amount", self.amount_);
}

template class Command<ClActionInAdvance>;
template class CachedCmdCreator<ClActionInAdvance>;

}  // namespace poker
