#pragma once

#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/types/TypeWrapper.h>
#include <CommandProcessor/types/UserAction.h>
#include <CommandProcessor/wire/FlatMap.h>

#include <utility>

namespace poker {

/// The actions that players chose before their turn, by seat; kept by the side that runs the table. Not locked: one
/// thread at a time.
class COMMANDPROCESSOR_API ActionOptionsManager {
 public:
  using Amounts = FlatMap<UserAction, RealMoneyType>;

  /// Records a choice, in place of an earlier one of the same action.
  /// @param amount  what the player is willing to put in; zero means any amount
  void addOption(UserAction action, const RealMoneyType& amount, const SeatID& seat);
  void removeOption(UserAction action, const SeatID& seat);
  void clearOptions(const SeatID& seat);
  void clearOptionForAll();

  /// What the seat chose among the offered actions. A choice fits when it is for any amount or for exactly the offered
  /// one; of several that fit, the lowest action code wins. The choice stays recorded.
  /// @param offered  by action, its amount
  /// @return the action and the amount offered for it; NoAction and -1.00 when nothing fits
  std::pair<UserAction, RealMoneyType> match(const Amounts& offered, const SeatID& seat) const;

 private:
  FlatMap<SeatID, Amounts> choices_;
};

}  // namespace poker
