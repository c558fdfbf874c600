#pragma once

#include <CommandProcessor/commands/Command.h>

namespace poker {

/// The table is protected: the client asks the user for its password and answers with ClSendUserPass.
/// It has no fields; init() is that of PokerCommand.
class COMMANDPROCESSOR_API SrvRequestPass final : public Command<SrvRequestPass> {
 private:
  friend FieldAccess;
  SrvRequestPass() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
