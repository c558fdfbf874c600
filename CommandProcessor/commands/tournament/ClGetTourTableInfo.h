#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/tournament/ClientTourCommandBase.h>

#include <cstdint>

namespace poker {

/// A client asks how a tournament's table is set up. Answered by SrvTourTableInfo.
class COMMANDPROCESSOR_API ClGetTourTableInfo final : public Command<ClGetTourTableInfo, ClientTourCommandBase> {
 public:
  void init(std::uint32_t tournamentId, std::uint32_t table);

  std::uint32_t table() const { return table_; }

 private:
  friend FieldAccess;
  ClGetTourTableInfo() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t table_ = 0;
};

}  // namespace poker
