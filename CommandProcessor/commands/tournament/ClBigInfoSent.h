#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/tournament/ClientTourCommandBase.h>

#include <cstdint>

namespace poker {

/// The client confirms that a large answer has arrived: the frame alone travels. The server knows by the connection
/// which tournament is meant.
class COMMANDPROCESSOR_API ClBigInfoSent final : public Command<ClBigInfoSent, ClientTourCommandBase> {
 public:
  /// @param tournamentId  for tournamentId() on this side; never sent
  void init(std::uint32_t tournamentId);

 private:
  friend FieldAccess;
  ClBigInfoSent() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
