#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/table/SrvTableStateUpdate.h>
#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/types/UserAction.h>

#include <cstdint>

namespace poker {

/// Tells the table what a player has done.
class COMMANDPROCESSOR_API SrvUserActionNotify final : public Command<SrvUserActionNotify, SrvTableStateUpdate> {
 public:
  /// Sets the notify flag.
  /// @param freeMoney   the player's stack
  /// @param tableMoney  what lies before the player in this betting round
  /// @param raisesLeft  how many raises the round still allows
  void init(SeatID seat, UserAction action, const RealMoneyType& freeMoney, const RealMoneyType& tableMoney,
            unsigned char raisesLeft);

  UserAction getActionCode() const { return action_; }
  const RealMoneyType& getFreeMoney() const { return freeMoney_; }
  const RealMoneyType& getTableMoney() const { return tableMoney_; }
  std::uint8_t raisesLeft() const { return raisesLeft_; }

 private:
  friend FieldAccess;
  SrvUserActionNotify() = default;
  static void fields(auto& self, auto&& field);

  UserAction action_ = UserAction::NoAction;
  RealMoneyType freeMoney_;
  RealMoneyType tableMoney_;
  std::uint8_t raisesLeft_ = 0;
};

}  // namespace poker
