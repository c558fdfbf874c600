#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/RealMoneyType.h>

#include <cstdint>

namespace poker {

/// A player queues for a seat at any table that fits a description.
class COMMANDPROCESSOR_API ClAddGlobalWaitList final : public Command<ClAddGlobalWaitList> {
 public:
  /// @param gameType    a GameType, or another number that server and client agree on
  /// @param minPlayers  the fewest players that sit at the table
  /// @param maxPlayers  the most players that sit at the table
  /// @param realMoney   false for play money
  void init(std::uint16_t gameType, RealMoneyType lowBet, RealMoneyType highBet, int minPlayers, int maxPlayers,
            bool realMoney);

  std::uint16_t gameType() const { return gameType_; }
  const RealMoneyType& lowBet() const { return lowBet_; }
  const RealMoneyType& highBet() const { return highBet_; }
  int minPlayers() const { return minPlayers_; }
  int maxPlayers() const { return maxPlayers_; }
  bool realMoney() const { return realMoney_; }

 private:
  friend FieldAccess;
  ClAddGlobalWaitList() = default;
  static void fields(auto& self, auto&& field);

  std::uint16_t gameType_ = 0;
  RealMoneyType lowBet_;
  RealMoneyType highBet_;
  std::int32_t minPlayers_ = 0;
  std::int32_t maxPlayers_ = 0;
  bool realMoney_ = false;
};

}  // namespace poker
