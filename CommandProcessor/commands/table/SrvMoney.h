#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/RealMoneyType.h>

namespace poker {

/// What a player has and may bring to the table, in answer to ClGetMoney.
class COMMANDPROCESSOR_API SrvMoney final : public Command<SrvMoney> {
 public:
  /// @param available  in the account, in the table's kind of money
  /// @param atTable    the player's stack; zero without a seat
  /// @param minimum    the least that the player may bring now
  /// @param maximum    the most that the player may bring now
  void init(const RealMoneyType& available, const RealMoneyType& atTable, const RealMoneyType& minimum,
            const RealMoneyType& maximum);

  const RealMoneyType& available() const { return available_; }
  const RealMoneyType& atTable() const { return atTable_; }
  const RealMoneyType& minimum() const { return minimum_; }
  const RealMoneyType& maximum() const { return maximum_; }

 private:
  friend FieldAccess;
  SrvMoney() = default;
  static void fields(auto& self, auto&& field);

  RealMoneyType available_;
  RealMoneyType atTable_;
  RealMoneyType minimum_;
  RealMoneyType maximum_;
};

}  // namespace poker
