#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/core/GenericCommands.h>

#include <string>

namespace poker {

/// A client asks for a player's picture. Answered by SrvSendUserPic. init() takes the player's name.
class COMMANDPROCESSOR_API ClGetNewPicture final
    : public Command<ClGetNewPicture, StringCommand<PokerCommandTmpl<ClientMiscCmdProcessorType>, MiscCommandType>> {
 public:
  const std::string& userName() const { return text(); }

 private:
  friend FieldAccess;
  ClGetNewPicture() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
