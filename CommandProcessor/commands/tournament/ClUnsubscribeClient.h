#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/tournament/ClientTourCommandBase.h>

#include <cstdint>

namespace poker {

/// The client wants no more updates about a tournament. Not answered.
class COMMANDPROCESSOR_API ClUnsubscribeClient final : public Command<ClUnsubscribeClient, ClientTourCommandBase> {
 public:
  void init(std::uint32_t tournamentId);

 private:
  friend FieldAccess;
  ClUnsubscribeClient() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
