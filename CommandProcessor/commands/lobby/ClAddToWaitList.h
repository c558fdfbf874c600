#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/core/GenericCommands.h>

namespace poker {

/// A player queues for a seat at one table; init() takes the game id. Answered by SrvAddToWaitListOk or
/// SrvAddToWaitListError.
class COMMANDPROCESSOR_API ClAddToWaitList final
    : public Command<ClAddToWaitList, NumberCommand<PokerCommandTmpl<ClientCmdProcessorType>>> {
 public:
  unsigned gameID() const { return number(); }

 private:
  friend FieldAccess;
  ClAddToWaitList() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
