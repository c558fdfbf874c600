#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/core/GenericCommands.h>

#include <string>

namespace poker {

/// The address is the user's own, in answer to ClValidateEmail. init() takes the address.
class COMMANDPROCESSOR_API SrvEmailValidated final
    : public Command<SrvEmailValidated, StringCommand<PokerCommandTmpl<SrvCmdProcessorType>, CommandType>> {
 public:
  const std::string& email() const { return text(); }

 private:
  friend FieldAccess;
  SrvEmailValidated() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
