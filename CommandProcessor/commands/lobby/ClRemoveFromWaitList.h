#pragma once

#include <CommandProcessor/commands/Command.h>

#include <cstdint>

namespace poker {

/// A player leaves a table's queue. Answered by SrvRemoveFromWaitListOk or SrvRemoveFromWaitListError.
class COMMANDPROCESSOR_API ClRemoveFromWaitList final : public Command<ClRemoveFromWaitList> {
 public:
  void init(unsigned gameID);

  unsigned gameID() const { return gameID_; }

 private:
  friend FieldAccess;
  ClRemoveFromWaitList() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t gameID_ = 0;
};

}  // namespace poker
