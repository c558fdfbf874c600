#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/CardVector.h>
#include <CommandProcessor/types/TypeWrapper.h>

namespace poker {

/// A player shows cards to the table.
class COMMANDPROCESSOR_API SrvShowPlayerCards final : public Command<SrvShowPlayerCards> {
 public:
  void init(SeatID seat, const CardVector& cards);

  SeatID seatID() const { return seatID_; }
  const CardVector& cards() const { return cards_; }

 private:
  friend FieldAccess;
  SrvShowPlayerCards() = default;
  static void fields(auto& self, auto&& field);

  CardVector cards_;
  SeatID seatID_;
};

}  // namespace poker
