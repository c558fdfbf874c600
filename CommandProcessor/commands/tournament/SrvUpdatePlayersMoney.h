#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/types/SteadyVector.h>

#include <cstdint>
#include <string>

namespace poker {

/// How the players of a table fare to which the client subscribed (ClSubscribeForTable).
class COMMANDPROCESSOR_API SrvUpdatePlayersMoney final : public Command<SrvUpdatePlayersMoney> {
 public:
  struct PlayerMoney {
    std::string name;
    RealMoneyType money;

   private:
    friend FieldAccess;
    static void fields(auto& self, auto&& field) {
      field("name", self.name);
      field("money", self.money);
    }
  };

  /// Without players.
  void init(std::uint32_t requestedTable, std::uint32_t tourID);
  /// Appends one.
  /// @param name  not one of this object's players'
  void addPlayer(const std::string& name, const RealMoneyType& money);

  std::uint32_t getRequestedTable() const { return requestedTable_; }
  std::uint32_t tourID() const { return tourID_; }
  /// In the order in which they were added.
  const SteadyVector<PlayerMoney>& getPlayers() const { return players_; }

 private:
  friend FieldAccess;
  SrvUpdatePlayersMoney() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t requestedTable_ = 0;
  std::uint32_t tourID_ = 0;
  SteadyVector<PlayerMoney> players_;
};

}  // namespace poker
