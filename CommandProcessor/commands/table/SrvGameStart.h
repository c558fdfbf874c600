#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/SeatIDSet.h>

namespace poker {

/// A hand begins.
class COMMANDPROCESSOR_API SrvGameStart final : public Command<SrvGameStart> {
 public:
  void init(const SeatIDSet& seats);

  /// The seats that take part.
  const SeatIDSet& getSeats() const { return seats_; }
  bool isParticipating(const SeatID& seat) const { return seats_.contains(seat); }

 private:
  friend FieldAccess;
  SrvGameStart() = default;
  static void fields(auto& self, auto&& field);

  SeatIDSet seats_;
};

}  // namespace poker
