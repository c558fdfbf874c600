#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/types/TourMoneyChooser.h>
#include <CommandProcessor/types/TypeWrapper.h>

namespace poker {

/// A player asks for a seat. Answered by SrvSitOk or SrvSitError.
class COMMANDPROCESSOR_API ClSitDown final : public Command<ClSitDown> {
 public:
  /// @param money    what the player brings to the table
  /// @param chooser  how the seat is paid for
  void init(SeatID seat, const RealMoneyType& money, const TourMoneyChooser& chooser);

  SeatID getSeatID() const { return seatID_; }
  const RealMoneyType& getMoney() const { return money_; }
  const TourMoneyChooser& moneyChooser() const { return moneyChooser_; }

 private:
  friend FieldAccess;
  ClSitDown() = default;
  static void fields(auto& self, auto&& field);

  SeatID seatID_;
  RealMoneyType money_;
  TourMoneyChooser moneyChooser_;
};

}  // namespace poker
