#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/tournament/ClientTourCommandBase.h>

#include <cstdint>

namespace poker {

/// The client wants to be told how the players of one table fare. SrvUpdatePlayersMoney follows as their money changes.
class COMMANDPROCESSOR_API ClSubscribeForTable final : public Command<ClSubscribeForTable, ClientTourCommandBase> {
 public:
  void init(const std::uint32_t& subscribedTable, const std::uint32_t& tournamentId);

  std::uint32_t getSubscribedTable() const { return subscribedTable_; }

 private:
  friend FieldAccess;
  ClSubscribeForTable() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t subscribedTable_ = 0;
};

}  // namespace poker
