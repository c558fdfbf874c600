#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/table/ClUserAction.h>

namespace poker {

void ClUserAction::init(UserAction action) {
  clearConnections();
  action_ = action;
  validAmount_ = false;
  amount_ = RealMoneyType();
}

void ClUserAction::init(UserAction action, const RealMoneyType& amount) {
  clearConnections();
  action_ = action;
  validAmount_ = true;
  amount_ = amount;
}

std::string ClUserAction::toString() const {
  return std::string("ClUserAction - action code: ") + actionCodeToStringForLog(action_);
}

void ClUserAction::fields(auto& self, auto&& field) {
  field("action", self.action_);
  field("validAmount", self.validAmount_);
  field.when("validAmount is true", self.validAmount_, [&](auto& part) { part("amount", self.amount_); });
}

template class Command<ClUserAction>;
template class CachedCmdCreator<ClUserAction>;

}  // namespace poker
