#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/ClientTableState.h>

namespace poker {

/// The whole table, as its recipient may see it: what a client that has just arrived, or has come back, draws from.
class COMMANDPROCESSOR_API SrvTableState final : public Command<SrvTableState> {
 public:
  void init(const ClientTableState& state);

  const ClientTableState& getState() const { return state_; }

 private:
  friend FieldAccess;
  SrvTableState() = default;
  static void fields(auto& self, auto&& field);

  ClientTableState state_;
};

}  // namespace poker
