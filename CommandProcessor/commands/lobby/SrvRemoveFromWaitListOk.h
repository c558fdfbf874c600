#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/SrvCommandGame.h>

namespace poker {

/// The player has left the table's queue, in answer to ClRemoveFromWaitList.
class COMMANDPROCESSOR_API SrvRemoveFromWaitListOk final : public Command<SrvRemoveFromWaitListOk, SrvCommandGame> {
 public:
  void init(unsigned gameID);

 private:
  friend FieldAccess;
  SrvRemoveFromWaitListOk() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
