#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/MultiTourPlayersInfo.h>

#include <cstdint>

namespace poker {

/// The players of a multi-table tournament that changed, in answer to ClGetUpdateInfo.
class COMMANDPROCESSOR_API SrvUpdatePlayers final : public Command<SrvUpdatePlayers> {
 public:
  void init(const MultiTourPlayersInfo& players, std::uint32_t tourID);

  const MultiTourPlayersInfo& getPlayersInfo() const { return players_; }
  std::uint32_t tourID() const { return tourID_; }

 private:
  friend FieldAccess;
  SrvUpdatePlayers() = default;
  static void fields(auto& self, auto&& field);

  MultiTourPlayersInfo players_;
  std::uint32_t tourID_ = 0;
};

}  // namespace poker
