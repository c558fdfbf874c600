#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/table/SrvErrorCode.h>
#include <CommandProcessor/types/RealMoneyType.h>

#include <string>

namespace poker {

/// The player does not get the seat, in answer to ClSitDown.
class COMMANDPROCESSOR_API SrvSitError final : public Command<SrvSitError> {
 public:
  /// @param money  what the player had at the last sitting (ExactMoneyRequired); otherwise zero, which does not travel
  void init(SrvErrorCode errorCode, const RealMoneyType& money);

  SrvErrorCode errorCode() const { return errorCode_; }
  const RealMoneyType& getMoney() const { return money_; }
  /// What the player is told.
  /// @param duration  seconds that must pass between two sittings; below 1 counts as 1800
  std::string getErrorMsg(int duration) const;

 private:
  friend FieldAccess;
  SrvSitError() = default;
  static void fields(auto& self, auto&& field);

  SrvErrorCode errorCode_ = SrvErrorCode::SeatTaken;
  RealMoneyType money_;
};

}  // namespace poker
