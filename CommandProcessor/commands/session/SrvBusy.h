#pragma once

#include <CommandProcessor/commands/Command.h>

namespace poker {

/// The server has no room for another connection now, in answer to ClHandShake: the client tries again later.
/// It has no fields; init() is that of PokerCommand.
class COMMANDPROCESSOR_API SrvBusy final : public Command<SrvBusy> {
 private:
  friend FieldAccess;
  SrvBusy() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
