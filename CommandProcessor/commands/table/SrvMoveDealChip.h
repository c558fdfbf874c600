#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/table/SrvTableStateUpdate.h>

namespace poker {

/// The dealer chip moves to a seat.
class COMMANDPROCESSOR_API SrvMoveDealChip final : public Command<SrvMoveDealChip, SrvTableStateUpdate> {
 public:
  /// @param seat  the new dealer
  void init(SeatID seat);

 private:
  friend FieldAccess;
  SrvMoveDealChip() = default;
  static void fields(auto& self, auto&& field);
};

}  // namespace poker
