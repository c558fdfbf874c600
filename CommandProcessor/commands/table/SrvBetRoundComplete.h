#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/Pot.h>
#include <CommandProcessor/types/RealMoneyType.h>

namespace poker {

/// A betting round is over; the bets go into the pots.
class COMMANDPROCESSOR_API SrvBetRoundComplete final : public Command<SrvBetRoundComplete> {
 public:
  /// @param moveChips       whether the client moves the bets to the pots
  /// @param showCheckBoxes  whether the client offers the actions in advance
  /// @param bet             the bet of the next round
  /// @param rake            what the house has taken from the pots so far
  void init(const Pot& pot, bool moveChips, bool showCheckBoxes, const RealMoneyType& bet, const RealMoneyType& rake);

  const Pot& getPot() const { return pot_; }
  bool moveChips() const { return moveChips_; }
  bool showCheckBoxes() const { return showCheckBoxes_; }
  const RealMoneyType& bet() const { return bet_; }
  const RealMoneyType& rake() const { return rake_; }

 private:
  friend FieldAccess;
  SrvBetRoundComplete() = default;
  static void fields(auto& self, auto&& field);

  Pot pot_;
  bool moveChips_ = false;
  bool showCheckBoxes_ = false;
  RealMoneyType bet_;
  RealMoneyType rake_;
};

}  // namespace poker
