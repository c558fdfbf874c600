#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/SrvCommandGame.h>

namespace poker {

/// The player stands in the table's queue, in answer to ClAddToWaitList.
class COMMANDPROCESSOR_API SrvAddToWaitListOk final : public Command<SrvAddToWaitListOk, SrvCommandGame> {
 public:
  void init(unsigned gameID);

 private:
  friend FieldAccess;
  SrvAddToWaitListOk() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
