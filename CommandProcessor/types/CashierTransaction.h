#pragma once

#include <CommandProcessor/platform/COleDateTime.h>
#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/wire/Record.h>

#include <cstdint>
#include <string>

namespace poker {

/// One movement of money on a user's account.
///
///     transactionID (32 bits), date (date-time), kind (byte), status (byte), amount (money), balance (money),
///     description (string)
struct COMMANDPROCESSOR_API CashierTransaction : Record<CashierTransaction> {
  /// One byte; values without a name are carried as they are.
  enum Kind : std::uint8_t {
    Deposit = 0,
    Withdrawal = 1,
    TableBuyIn = 2,
    TableCashOut = 3,
    TourBuyIn = 4,
    TourPrize = 5,
    Bonus = 6,
    Correction = 7,  ///< by the staff
  };
  /// One byte; values without a name are carried as they are.
  enum Status : std::uint8_t {
    Done = 0,
    Pending = 1,    ///< not booked yet; a withdrawal can still be taken back (ClMiscCancelWithdrawal)
    Cancelled = 2,  ///< by the user
    Refused = 3,    ///< by the cashier
  };

  std::uint32_t transactionID = 0;
  COleDateTime date;
  Kind kind = Deposit;
  Status status = Done;
  RealMoneyType amount;   ///< below zero when it leaves the account
  RealMoneyType balance;  ///< of the account, afterwards
  std::string description;

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("transactionID", self.transactionID);
    field("date", self.date);
    field("kind", self.kind);
    field("status", self.status);
    field("amount", self.amount);
    field("balance", self.balance);
    field("description", self.description);
  }
};

}  // namespace poker
