#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/RealMoneyType.h>

namespace poker {

/// A seated player brings more money to the table, to be played from the next hand on.
class COMMANDPROCESSOR_API ClMoreMoney final : public Command<ClMoreMoney> {
 public:
  void init(const RealMoneyType& money);

  const RealMoneyType& getMoney() const { return money_; }

 private:
  friend FieldAccess;
  ClMoreMoney() = default;
  static void fields(auto& self, auto&& field);

  RealMoneyType money_;
};

}  // namespace poker
