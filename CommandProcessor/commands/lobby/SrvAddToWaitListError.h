#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/SrvCommandGame.h>

namespace poker {

/// The player could not be queued, in answer to ClAddToWaitList.
class COMMANDPROCESSOR_API SrvAddToWaitListError final : public Command<SrvAddToWaitListError, SrvCommandGame> {
 public:
  void init(unsigned gameID);

 private:
  friend FieldAccess;
  SrvAddToWaitListError() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
