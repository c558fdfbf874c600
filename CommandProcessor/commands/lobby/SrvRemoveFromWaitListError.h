#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/SrvCommandGame.h>

namespace poker {

/// The player could not be taken off the queue, in answer to ClRemoveFromWaitList.
class COMMANDPROCESSOR_API SrvRemoveFromWaitListError final
    : public Command<SrvRemoveFromWaitListError, SrvCommandGame> {
 public:
  void init(unsigned gameID);

 private:
  friend FieldAccess;
  SrvRemoveFromWaitListError() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
