#pragma once

#include <CommandProcessor/types/UserAction.h>
#include <examples/holdem/game/Betting.h>
#include <examples/holdem/game/Blinds.h>
#include <examples/holdem/game/Deck.h>
#include <examples/holdem/game/HandPlayer.h>
#include <examples/holdem/game/HandValue.h>
#include <examples/holdem/game/Pots.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace poker::holdem {

/// What happens in a hand, in its order. Nobody may call the hand from here but to look at it.
class HandEvents {
 public:
  virtual ~HandEvents() = default;

  /// @param blind   SmallBlind, BigBlind, or Post for who comes in late
  /// @param amount  what was paid, which is less than it should be for a player whose stack did not suffice
  virtual void onBlind(const HandPlayer& player, UserAction blind, const RealMoneyType& amount) = 0;
  /// Everybody has two cards.
  virtual void onDealt() = 0;
  virtual void onAction(const HandPlayer& player, UserAction action, const RealMoneyType& amount) = 0;
  /// What nobody called goes back to its player.
  virtual void onUncalled(const HandPlayer& player, const RealMoneyType& amount) = 0;
  /// The bets are in the pots.
  virtual void onRoundOver(Street street) = 0;
  virtual void onBoard(Street street, std::span<const Card> cards) = 0;
  /// A player's cards are seen by all from now on.
  virtual void onTurnedUp(const HandPlayer& player) = 0;
  /// Whether a player shows cards that need not be shown.
  virtual bool showsAnyway(const HandPlayer& player) = 0;
  /// The hand is over; what everybody won stands in the players.
  virtual void onOver() = 0;
};

/// One hand of hold'em, from the blinds to the last pot. The object may be used for one hand after another.
class Hand {
 public:
  explicit Hand(HandEvents& events) : events_(events), betting_(players_) {}
  Hand(const Hand&) = delete;
  Hand& operator=(const Hand&) = delete;

  /// Posts the blinds, deals, and runs to the first turn.
  /// @param stackOf  (SeatID) -> what the player of a seat has
  /// @param deck     shuffled; must outlive the hand
  template <class StackOf>
  void begin(const Stakes& stakes, const HandPlan& plan, StackOf&& stackOf, Deck& deck) {
    players_.clear();
    for (std::size_t i = 0; i < plan.size; ++i) players_.add(plan.seats[i].seat, stackOf(plan.seats[i].seat));
    begin(stakes, plan, deck);
  }

  bool isOver() const { return over_; }
  /// Null when it is nobody's.
  const HandPlayer* turn() const;
  /// What the player whose turn it is may do.
  const NextTurnOptions& options() const { return betting_.options(); }
  std::uint8_t raisesLeft() const { return betting_.raisesLeft(); }
  /// Plays for the player whose turn it is, and runs to the next turn or the end.
  /// @param amount  what the player adds; zero: the least
  /// @return whether it was open; nothing has happened otherwise
  bool act(UserAction action, const RealMoneyType& amount);

  const HandPlayers& players() const { return players_; }
  const HandPlan& plan() const { return plan_; }
  Street street() const { return street_; }
  std::span<const Card> board() const { return {board_.data(), boardSize_}; }
  /// Of the finished betting rounds.
  const Pots& pots() const { return pots_; }
  /// At the end: those who were in, the first one to show first; indexes into players().
  std::span<const std::uint8_t> finalists() const { return {finalists_.data(), finalistCount_}; }
  /// What a player got of one pot; indexes into pots() and players().
  struct Win {
    std::uint8_t pot;
    std::uint8_t player;
    RealMoneyType amount;
  };
  /// At the end: pot by pot.
  std::span<const Win> wins() const { return wins_; }
  /// At the end: the value of a player's cards, when there were five on the board.
  HandValue valueOf(const HandPlayer& player) const;

 private:
  void begin(const Stakes& stakes, const HandPlan& plan, Deck& deck);
  void postBlinds();
  void deal();
  void run();
  void endRound();
  void dealBoard();
  bool bettingIsOver() const;
  void turnUp(HandPlayer& player);
  void showDown();
  void showOrMuck();
  void award();

  HandEvents& events_;
  Stakes stakes_;
  HandPlan plan_;
  Deck* deck_ = nullptr;
  HandPlayers players_;
  Betting betting_;
  Pots pots_;
  Street street_ = Street::PreFlop;
  std::array<Card, 5> board_;
  std::size_t boardSize_ = 0;
  std::array<std::uint8_t, kMaxSeats> finalists_{};
  std::size_t finalistCount_ = 0;
  std::vector<RealMoneyType> shares_;
  std::vector<Win> wins_;
  bool over_ = true;
};

}  // namespace poker::holdem
