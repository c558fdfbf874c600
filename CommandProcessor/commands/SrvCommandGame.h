#pragma once

#include <CommandProcessor/core/BaseCommand.h>

#include <cstdint>

namespace poker {

/// The base of the commands that say something about one game; its field stands in front of theirs.
class COMMANDPROCESSOR_API SrvCommandGame : public BaseCommand<SrvCommandGame> {
 public:
  explicit SrvCommandGame(CommandType type) : BaseCommand(type) {}
  SrvCommandGame(CommandType type, unsigned gameID) : BaseCommand(type), gameID_(gameID) {}

  unsigned gameID() const { return gameID_; }

 protected:
  friend FieldAccess;
  static void fields(auto& self, auto&& field) { field("gameID", self.gameID_); }

  std::uint32_t gameID_ = 0;
};

}  // namespace poker
