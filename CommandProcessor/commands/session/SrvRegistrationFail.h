#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/core/GenericCommands.h>

namespace poker {

/// The account could not be created, in answer to ClMakeNewAccount; the client shows errorMsg().
/// init() takes a CommonTypes::NewAccountReg as a plain byte.
class COMMANDPROCESSOR_API SrvRegistrationFail final
    : public Command<SrvRegistrationFail,
                     NumberCommandEx<PokerCommandTmpl<SrvCmdProcessorType>, unsigned char, unsigned char>> {
 public:
  /// A CommonTypes::NewAccountReg, or another value that is carried as it is.
  unsigned char result() const { return number(); }
  /// What the user is told: lines with "\n" between them. Never null.
  const char* errorMsg() const;

 private:
  friend FieldAccess;
  SrvRegistrationFail() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
