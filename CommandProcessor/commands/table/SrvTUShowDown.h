#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/table/SrvTableStateUpdate.h>
#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/types/SDInfo.h>
#include <CommandProcessor/wire/FlatMap.h>

namespace poker {

/// The hand is over: who showed what and won how much, and what everybody had bet. Each recipient gets a command of its
/// own, with the cards that it may see.
class COMMANDPROCESSOR_API SrvTUShowDown final : public Command<SrvTUShowDown, SrvTableStateUpdate> {
 public:
  /// Empties the lists of players.
  /// @param casinoProfit  the rake
  void init(const RealMoneyType& casinoProfit);
  /// Adds a final player behind those that are there.
  /// @param cards  none of this command's own
  /// @param money  what the player won
  void addFinalUser(const CardVector& cards, SeatID seat, const RealMoneyType& money, SDInfo::WinnerType winnerType);
  /// Notes what a player bet and won in the whole hand, in place of an earlier note.
  void addPlayerInfo(SeatID seat, const RealMoneyType& bet, const RealMoneyType& win);
  void setCasinoProfit(const RealMoneyType& casinoProfit) { casinoProfit_ = casinoProfit; }

  /// The final players in the order in which they were added.
  const SDInfoVector& getUserCards() const { return users_; }
  /// Zero when nothing is known of the seat.
  RealMoneyType wins(const SeatID& seat) const;
  /// Zero when nothing is known of the seat.
  RealMoneyType bets(const SeatID& seat) const;
  const RealMoneyType& casinoProfit() const { return casinoProfit_; }

 private:
  friend FieldAccess;
  SrvTUShowDown() = default;
  static void fields(auto& self, auto&& field);

  using MoneyBySeat = FlatMap<SeatID, RealMoneyType>;

  SDInfoVector users_;
  MoneyBySeat wins_;
  MoneyBySeat bets_;
  RealMoneyType casinoProfit_;
};

}  // namespace poker
