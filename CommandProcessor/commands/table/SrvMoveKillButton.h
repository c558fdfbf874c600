#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/TypeWrapper.h>

namespace poker {

/// The kill button moves to a seat.
class COMMANDPROCESSOR_API SrvMoveKillButton final : public Command<SrvMoveKillButton> {
 public:
  void init(const SeatID& seat);

  const SeatID& seatID() const { return seatID_; }

 private:
  friend FieldAccess;
  SrvMoveKillButton() = default;
  static void fields(auto& self, auto&& field);

  SeatID seatID_;
};

}  // namespace poker
