#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/TypeWrapper.h>

namespace poker {

/// The player plays again, in answer to ClBack.
class COMMANDPROCESSOR_API SrvBackOnSeatOk final : public Command<SrvBackOnSeatOk> {
 public:
  void init(SeatID seat);

  SeatID getSeatID() const { return seatID_; }

 private:
  friend FieldAccess;
  SrvBackOnSeatOk() = default;
  static void fields(auto& self, auto&& field);

  SeatID seatID_;
};

}  // namespace poker
