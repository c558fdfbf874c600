#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/core/GenericCommands.h>

#include <string>

namespace poker {

/// A user who is not logged on forgot its password. What helps is sent to its e-mail address, never in an answer, and
/// nothing tells whether there is such a user. init() takes the user's name.
class COMMANDPROCESSOR_API ClMiscForgotPass final
    : public Command<ClMiscForgotPass, StringCommand<PokerCommandTmpl<ClientMiscCmdProcessorType>, MiscCommandType>> {
 public:
  const std::string& userName() const { return text(); }

 private:
  friend FieldAccess;
  ClMiscForgotPass() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
