#pragma once

#include <CommandProcessor/commands/AllCommands.h>
#include <CommandProcessor/types/ClientTableState.h>

namespace poker::holdem {

/// A table as one viewer sees it, kept up to date with what the server sends: what it holds after any command is what a
/// SrvTableState of that moment would say. A command that speaks of a seat which nobody has changes nothing. One thread
/// at a time.
class TablePicture {
 public:
  const ClientTableState& state() const { return state_; }
  /// Null when nobody has the seat.
  const ClientSeatState* seat(const SeatID& id) const;
  /// Null for somebody who looks on.
  const ClientSeatState* ownSeat() const { return seat(state_.ownSeat); }
  /// The largest bet of this round.
  RealMoneyType highestBet() const;
  /// All stacks, bets and pots; not the rake.
  RealMoneyType total() const;

  void apply(const SrvTableState& command) { state_ = command.getState(); }
  void apply(const SrvUpdateHintText& command);
  void apply(const SrvGameStart& command);
  void apply(const SrvMoveDealChip& command) { state_.dealerSeat = command.getSeatID(); }
  void apply(const SrvUserActionNotify& command);
  void apply(const SrvCardDeal& command);
  void apply(const SrvUserTurn& command);
  void apply(const SrvBetRoundComplete& command);
  void apply(const SrvPotCardDeal& command);
  void apply(const SrvShowPlayerCards& command);
  void apply(const SrvTUShowDown& command);
  void apply(const SrvUserStateOnTable& command);
  /// One that is only announced changes nothing.
  void apply(const SrvLevelSwitch& command);
  void apply(const SrvSitOk& command) { state_.ownSeat = command.getSeatID(); }

 private:
  ClientSeatState* find(const SeatID& id);
  void clearBets();
  void clearHand();
  void endTurn();

  ClientTableState state_;
};

}  // namespace poker::holdem
