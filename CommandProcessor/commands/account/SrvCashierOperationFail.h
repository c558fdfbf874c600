#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/core/GenericCommands.h>

#include <string>

namespace poker {

/// The cashier refuses what the user asked for. init() takes the text to show.
class COMMANDPROCESSOR_API SrvCashierOperationFail final
    : public Command<SrvCashierOperationFail, StringCommand<PokerCommandTmpl<SrvCmdProcessorType>, CommandType>> {
 public:
  const std::string& message() const { return text(); }

 private:
  friend FieldAccess;
  SrvCashierOperationFail() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
