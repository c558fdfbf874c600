#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/tournament/ClientTourCommandBase.h>

#include <cstdint>

namespace poker {

/// The lobby asks for the full picture of a multi-table tournament. Answered by SrvMultiTourInitialize.
class COMMANDPROCESSOR_API ClGetMultiInitializeInfo final
    : public Command<ClGetMultiInitializeInfo, ClientTourCommandBase> {
 public:
  void init(std::uint32_t tournamentId);

 private:
  friend FieldAccess;
  ClGetMultiInitializeInfo() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
