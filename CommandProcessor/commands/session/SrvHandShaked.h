#pragma once

#include <CommandProcessor/commands/Command.h>

namespace poker {

/// The server takes the connection, in answer to ClHandShake: the client may log on.
/// It has no fields; init() is that of PokerCommand.
class COMMANDPROCESSOR_API SrvHandShaked final : public Command<SrvHandShaked> {
 private:
  friend FieldAccess;
  SrvHandShaked() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
