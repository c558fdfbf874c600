#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/tournament/ClientTourCommandBase.h>

#include <cstdint>

namespace poker {

/// A player asks what a tournament costs. Answered by SrvTourMoney.
class COMMANDPROCESSOR_API ClGetTourMoney final : public Command<ClGetTourMoney, ClientTourCommandBase> {
 public:
  void init(std::uint32_t tournamentId);

 private:
  friend FieldAccess;
  ClGetTourMoney() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
