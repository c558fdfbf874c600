#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/CashierTransaction.h>
#include <CommandProcessor/types/SteadyVector.h>

namespace poker {

/// The movements of money on the user's account, in answer to ClMiscCashierInfo and ClMiscCancelWithdrawal.
class COMMANDPROCESSOR_API SrvTransHistory final : public Command<SrvTransHistory> {
 public:
  /// Without transactions.
  void init();
  /// Appends one; the latest comes first.
  void add(const CashierTransaction& transaction);

  const SteadyVector<CashierTransaction>& transactions() const { return transactions_; }

 private:
  friend FieldAccess;
  SrvTransHistory() = default;
  static void fields(auto& self, auto&& field);

  SteadyVector<CashierTransaction> transactions_;
};

}  // namespace poker
