#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/RealMoneyType.h>

#include <cstdint>

namespace poker {

/// A player chooses actions before the turn, or takes the choice back.
class COMMANDPROCESSOR_API ClActionInAdvance final : public Command<ClActionInAdvance> {
 public:
  /// @param actions  mask of UserAction codes
  /// @param amount   what the player is willing to put in; zero means any amount
  /// @param onOff    whether the actions are chosen or taken back
  void init(unsigned actions, const RealMoneyType& amount, bool onOff);

  unsigned actions() const { return actions_; }
  bool onOff() const { return onOff_; }
  const RealMoneyType& getActionMoney() const { return amount_; }

 private:
  friend FieldAccess;
  ClActionInAdvance() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t actions_ = 0;
  bool onOff_ = false;
  RealMoneyType amount_;
};

}  // namespace poker
