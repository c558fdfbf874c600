#pragma once

#include <CommandProcessor/types/DbRecord.h>
#include <CommandProcessor/types/TourMoneyChooser.h>

namespace poker {

/// What chips cost in a multi-table tournament. Where there are no re-buys or add-ons, theirs are zero.
///
///     buy-in chips (money), buy-in; re-buy chips (money), re-buy; add-on chips (money), add-on; fee (each price a
///     TourMoneyChooser)
struct COMMANDPROCESSOR_API MultiTourMoneyInfo : DbRecord<MultiTourMoneyInfo> {
  RealMoneyType buyInChips;  ///< what everybody starts with
  TourMoneyChooser buyIn;
  TourMoneyChooser fee;  ///< stays with the house
  RealMoneyType rebuyChips;
  TourMoneyChooser rebuy;
  RealMoneyType addOnChips;
  TourMoneyChooser addOn;

 private:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) {
    field("buyInChips", self.buyInChips);
    field("buyIn", self.buyIn);
    field("rebuyChips", self.rebuyChips);
    field("rebuy", self.rebuy);
    field("addOnChips", self.addOnChips);
    field("addOn", self.addOn);
    field("fee", self.fee);  // last, though it belongs to the buy-in; peers expect it so
  }
};

}  // namespace poker
