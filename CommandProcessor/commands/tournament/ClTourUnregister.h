#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/tournament/ClientTourCommandBase.h>

#include <cstdint>

namespace poker {

/// A player takes its registration back. Answered by SrvTourUnregisterResult.
class COMMANDPROCESSOR_API ClTourUnregister final : public Command<ClTourUnregister, ClientTourCommandBase> {
 public:
  void init(std::uint32_t tournamentId);

  std::uint32_t tourID() const { return tournamentId_; }

 private:
  friend FieldAccess;
  ClTourUnregister() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
