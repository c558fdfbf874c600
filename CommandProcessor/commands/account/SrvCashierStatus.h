#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/SrvUnknownValues.h>

namespace poker {

/// Named values about the user's account, in answer to ClMiscCashierInfo. init() takes no values; addData() adds them.
/// Marks the buffer that it is written into as one that holds private data.
class COMMANDPROCESSOR_API SrvCashierStatus final : public Command<SrvCashierStatus, SrvUnknownValues> {
 public:
  // Keys of value() and addData(). Amounts are texts as RealMoneyType makes and reads them. There may be others, and
  // each of these may be missing.
  static constexpr const char* kBalance = "balance";  ///< real money, without what is in play
  static constexpr const char* kInPlay = "in-play";   ///< real money at tables and in tournaments
  static constexpr const char* kBonus = "bonus";      ///< bonus money that is not released yet
  static constexpr const char* kPendingWithdrawals = "pending-withdrawals";  ///< what can still be taken back
  static constexpr const char* kDepositLimit = "deposit-limit";              ///< what may still be deposited today

 private:
  friend FieldAccess;
  SrvCashierStatus() = default;
  static void fields(auto& self, auto&& field);
  void aboutToSerialize(SerializeCommandBuf& buf) const;
};

}  // namespace poker
