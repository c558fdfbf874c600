#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/table/SrvTableStateUpdate.h>

#include <cstdint>

namespace poker {

/// A player has to post a blind.
class COMMANDPROCESSOR_API SrvPostBlind final : public Command<SrvPostBlind, SrvTableStateUpdate> {
 public:
  /// @param blind  which one: the code of a UserAction (SmallBlind, BigBlind, Ante, Post, Straddle)
  void init(SeatID seat, unsigned blind);

  unsigned blind() const { return blind_; }

 private:
  friend FieldAccess;
  SrvPostBlind() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t blind_ = 0;
};

}  // namespace poker
