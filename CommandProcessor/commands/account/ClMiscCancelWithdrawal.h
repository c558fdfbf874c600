#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/RealMoneyType.h>

#include <cstdint>

namespace poker {

/// A user takes back a withdrawal that is still pending. Answered by SrvTransHistory, or by SrvCashierOperationFail when
/// it is too late.
class COMMANDPROCESSOR_API ClMiscCancelWithdrawal final : public Command<ClMiscCancelWithdrawal> {
 public:
  /// @param transactionID  of the withdrawal (CashierTransaction)
  /// @param amount         how much of it is taken back, above zero and at most all of it
  void init(std::uint32_t transactionID, const RealMoneyType& amount);

  std::uint32_t transactionID() const { return transactionID_; }
  const RealMoneyType& amount() const { return amount_; }

 private:
  friend FieldAccess;
  ClMiscCancelWithdrawal() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t transactionID_ = 0;
  RealMoneyType amount_;
};

}  // namespace poker
