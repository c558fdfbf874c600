#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>

namespace poker {

/// Somebody has left a table.
class COMMANDPROCESSOR_API SrvPlayerLeave final : public Command<SrvPlayerLeave> {
 public:
  /// @param playersLeft  how many stay; only its low byte travels
  void init(unsigned gameID, unsigned playersLeft);

  unsigned gameID() const { return gameID_; }
  unsigned playersLeft() const { return playersLeft_; }

 private:
  friend FieldAccess;
  SrvPlayerLeave() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t gameID_ = 0;
  std::uint32_t playersLeft_ = 0;
};

}  // namespace poker
