#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/types/UserAction.h>

#include <string>

namespace poker {

/// A player acts, in answer to SrvUserTurn.
class COMMANDPROCESSOR_API ClUserAction final : public Command<ClUserAction> {
 public:
  /// An action without an amount.
  void init(UserAction action);
  void init(UserAction action, const RealMoneyType& amount);
  void setAction(UserAction action) { action_ = action; }

  UserAction getActionCode() const { return action_; }
  /// Zero when validAmount() is false.
  const RealMoneyType& amount() const { return amount_; }
  /// Whether there is an amount.
  bool validAmount() const { return validAmount_; }
  /// For logs: "ClUserAction - action code: Raise ".
  std::string toString() const;

 private:
  friend FieldAccess;
  ClUserAction() = default;
  static void fields(auto& self, auto&& field);

  UserAction action_ = UserAction::NoAction;
  bool validAmount_ = false;
  RealMoneyType amount_;
};

}  // namespace poker
