#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/GameStartupInfo.h>

namespace poker {

/// How the table is set up at which the player is to take its seat.
class COMMANDPROCESSOR_API SrvTakeSeatInfo final : public Command<SrvTakeSeatInfo> {
 public:
  void init(const GameStartupInfo& tableInfo);

  const GameStartupInfo& getTableInfo() const { return tableInfo_; }

 private:
  friend FieldAccess;
  SrvTakeSeatInfo() = default;
  static void fields(auto& self, auto&& field);

  GameStartupInfo tableInfo_;
};

}  // namespace poker
