#pragma once

#include <CommandProcessor/commands/Command.h>

namespace poker {

/// The server has the connection forwarded to another server, in answer to ClHandShake.
/// It has no fields; init() is that of PokerCommand.
class COMMANDPROCESSOR_API SrvForward final : public Command<SrvForward> {
 private:
  friend FieldAccess;
  SrvForward() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
