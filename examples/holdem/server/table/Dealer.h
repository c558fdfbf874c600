#pragma once

#include <CommandProcessor/types/ActionOptionsManager.h>
#include <CommandProcessor/types/ClientTableState.h>
#include <CommandProcessor/types/UserCardsInfoVector.h>
#include <examples/holdem/game/Hand.h>
#include <examples/holdem/server/table/Audience.h>
#include <examples/holdem/server/table/HandRecord.h>
#include <examples/holdem/server/table/Seats.h>
#include <examples/holdem/server/table/TableSettings.h>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include <cstdint>

namespace poker::holdem {

/// What a dealer needs of its table.
class DealerHost {
 public:
  virtual ~DealerHost() = default;

  /// A hand is over, and viewers have not heard of it yet: the time to book it.
  virtual void onHandOver() = 0;
  /// Time ran out and something was played. Comes after all that followed from it.
  virtual void onTimePlayed() = 0;
};

/// Conducts the hands of a table: tells the viewers what happens, each no more than it may see, asks the players for their
/// turns, plays what they chose in advance, and plays for those who do not answer in time.
class Dealer final : private HandEvents {
 public:
  /// How turns ended. Every turn that is asked ends in one of these ways.
  struct Turns {
    std::uint64_t asked = 0;
    std::uint64_t answered = 0;
    std::uint64_t timedOut = 0;
    std::uint64_t left = 0;       ///< the player gave up the seat meanwhile
    std::uint64_t inAdvance = 0;  ///< played without being asked
  };

  /// All references must outlive the dealer.
  Dealer(asio::io_context& context, const TableSettings& settings, Seats& seats, Audience& audience, DealerHost& host);

  bool isPlaying() const { return !hand_.isOver(); }
  const Hand& hand() const { return hand_; }
  const HandRecord& record() const { return record_; }
  /// The hand that the viewers are being told of, from its number to its showdown; 0 between hands.
  std::uint64_t handTold() const { return handTold_; }
  const Turns& turns() const { return turns_; }
  /// Null when the seat is not in a hand.
  const HandPlayer* playerOf(const SeatID& seat) const { return isPlaying() ? hand_.players().find(seat) : nullptr; }
  /// What the player of a seat has before it, without the bet.
  RealMoneyType stackOf(const Seat& seat) const;
  /// How the player of a seat stands, as viewers should see it.
  UserState stateOf(const Seat& seat) const;

  /// Deals a hand, and runs to the first turn that must be asked.
  /// @param deck  shuffled; must outlive the hand
  void deal(std::uint64_t number, const HandPlan& plan, Deck& deck);

  // What players do. Whatever comes from a seat at the wrong time is passed over.

  void acknowledgeTurn(const SeatID& seat);
  void act(const SeatID& seat, UserAction action, const RealMoneyType& amount);
  /// Sets or takes back what a player chose in advance.
  /// @param actions  mask
  void choose(const SeatID& seat, std::uint32_t actions, const RealMoneyType& amount, bool on);
  bool hasChosen(const SeatID& seat, UserAction action) const;
  /// The player of a seat gives it up: its turn is played at once when it comes.
  void playerLeaves(const SeatID& seat);
  /// The player of a seat is here again: it is told what it may see, and asked again if it is its turn.
  void playerReturns(const SeatID& seat);
  /// Forgets everything about a seat that is free now.
  void forget(const SeatID& seat) { choices_.clearOptions(seat); }

  /// Fills in what the table's picture owes to the hand, as the viewer may see it.
  /// @param viewer  its seat; none for one who looks on
  void describe(ClientTableState& state, const SeatID& viewer) const;

 private:
  void onBlind(const HandPlayer& player, UserAction blind, const RealMoneyType& amount) override;
  void onDealt() override;
  void onAction(const HandPlayer& player, UserAction action, const RealMoneyType& amount) override;
  void onUncalled(const HandPlayer& player, const RealMoneyType& amount) override;
  void onRoundOver(Street street) override;
  void onBoard(Street street, std::span<const Card> cards) override;
  void onTurnedUp(const HandPlayer& player) override;
  bool showsAnyway(const HandPlayer& player) override;
  void onOver() override;

  void proceed();
  void ask();
  void askOne(const SeatID& seat, bool again);
  void onReplyTime();
  void checkOrFold();
  bool playInAdvance(const SeatID& seat);
  void clearTurnChoices(const SeatID& seat);
  void tell(const HandPlayer& player, UserAction action);
  unsigned secondsLeft() const;
  const CardVector& cardsFor(const HandPlayer& player, const SeatID& viewer) const;
  void fillPot() const;

  const TableSettings& settings_;
  Seats& seats_;
  Audience& audience_;
  DealerHost& host_;
  Hand hand_;
  HandRecord record_;
  std::uint64_t handTold_ = 0;
  ActionOptionsManager choices_;
  ActionOptionsManager::Amounts offered_;
  asio::steady_timer timer_;
  SeatID asked_;  // whose turn the viewers were told
  Clock::time_point deadline_;
  RealMoneyType inPots_;  // after the last betting round, with the rake
  Turns turns_;
  // Filled anew for each use.
  mutable UserCardsInfoVector packs_;
  mutable CardVector cards_;
  mutable Pot pot_;
  ConnectionsSet onlookers_;
};

}  // namespace poker::holdem
