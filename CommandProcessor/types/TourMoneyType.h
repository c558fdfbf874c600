#pragma once

#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/wire/Record.h>

namespace poker {

/// A price in a tournament: what it is in cash, and what it is for those who pay in tournament money.
///
///     cash, tournament money (money)
struct COMMANDPROCESSOR_API TourMoneyType : Record<TourMoneyType> {
  /// Free.
  TourMoneyType() = default;
  TourMoneyType(const RealMoneyType& inCash, const RealMoneyType& inTourMoney) : cash(inCash), tourMoney(inTourMoney) {}

  RealMoneyType cash;
  RealMoneyType tourMoney;

  friend TourMoneyType operator+(const TourMoneyType& a, const TourMoneyType& b) {
    return {a.cash + b.cash, a.tourMoney + b.tourMoney};
  }
  friend bool operator==(const TourMoneyType& a, const TourMoneyType& b) {
    return a.cash == b.cash && a.tourMoney == b.tourMoney;
  }

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("cash", self.cash);
    field("tourMoney", self.tourMoney);
  }
};

}  // namespace poker
