#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/TypeWrapper.h>

namespace poker {

/// The player has the seat, in answer to ClSitDown.
class COMMANDPROCESSOR_API SrvSitOk final : public Command<SrvSitOk> {
 public:
  void init(SeatID seat);

  SeatID getSeatID() const { return seatID_; }

 private:
  friend FieldAccess;
  SrvSitOk() = default;
  static void fields(auto& self, auto&& field);

  SeatID seatID_;
};

}  // namespace poker
