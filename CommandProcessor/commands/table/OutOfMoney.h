#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/table/SrvErrorCode.h>
#include <CommandProcessor/commands/table/SrvTableStateUpdate.h>
#include <CommandProcessor/types/RealMoneyType.h>

#include <string>

namespace poker {

/// The player's stack is gone, or does not suffice here, and tells why. The player may bring more (ClMoreMoney) or
/// loses the seat.
class COMMANDPROCESSOR_API OutOfMoney final : public Command<OutOfMoney, SrvTableStateUpdate> {
 public:
  /// The seat is left open, as the command is addressed to its player.
  /// @param money  what the player has left
  void init(const RealMoneyType& money, SrvErrorCode errorCode);

  const RealMoneyType& getMoney() const { return money_; }
  SrvErrorCode errorCode() const { return errorCode_; }
  /// What the player is told.
  std::string err() const;

 private:
  friend FieldAccess;
  OutOfMoney() = default;
  static void fields(auto& self, auto&& field);

  RealMoneyType money_;
  SrvErrorCode errorCode_ = SrvErrorCode::SeatTaken;
};

}  // namespace poker
