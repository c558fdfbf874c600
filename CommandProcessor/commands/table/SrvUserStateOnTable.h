#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/table/SrvTableStateUpdate.h>
#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/types/UserState.h>

#include <string>

namespace poker {

/// A player takes or leaves a seat, sits out or comes back, or the stack changes between hands. Everybody at the table
/// gets it.
class COMMANDPROCESSOR_API SrvUserStateOnTable final : public Command<SrvUserStateOnTable, SrvTableStateUpdate> {
 public:
  /// @param money  the player's stack
  void init(const SeatID& seat, const char* displayName, const RealMoneyType& money, UserState state);
  void setState(UserState state) { state_ = state; }

  const std::string& getDisplayName() const { return displayName_; }
  const RealMoneyType& getMoney() const { return money_; }
  UserState state() const { return state_; }

 private:
  friend FieldAccess;
  SrvUserStateOnTable() = default;
  static void fields(auto& self, auto&& field);

  std::string displayName_;
  RealMoneyType money_;
  UserState state_ = UserState::Empty;
};

}  // namespace poker
