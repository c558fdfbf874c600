#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/core/GenericCommands.h>

#include <string>

namespace poker {

/// A client asks for a player's profile. Answered by SrvPlayerProfile. init() takes the player's name.
class COMMANDPROCESSOR_API ClGetPlayerProfile final
    : public Command<ClGetPlayerProfile, StringCommand<PokerCommandTmpl<ClientMiscCmdProcessorType>, MiscCommandType>> {
 public:
  const std::string& userName() const { return text(); }

 private:
  friend FieldAccess;
  ClGetPlayerProfile() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
