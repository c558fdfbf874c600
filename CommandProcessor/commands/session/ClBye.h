#pragma once

#include <CommandProcessor/commands/Command.h>

namespace poker {

/// The client ends its session on purpose. There is no answer: the server closes the connection.
/// It has no fields; init() is that of PokerCommand.
class COMMANDPROCESSOR_API ClBye final : public Command<ClBye> {
 private:
  friend FieldAccess;
  ClBye() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
