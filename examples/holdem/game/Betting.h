#pragma once

#include <CommandProcessor/types/NextTurnOptions.h>
#include <examples/holdem/game/HandPlayer.h>

#include <cstdint>
#include <optional>

namespace poker::holdem {

/// The betting of a hand, one round after the other: whose turn it is, what is open, what an action does.
///
/// No limit: a raise is at least as large as the last full bet or raise. All-ins for less raise the price, and open the
/// betting again only for players who face a full raise more than when they acted.
/// Fixed limit: bets and raises of one size, four of them a round unless two players are left at its beginning. An all-in of at least half a bet
/// counts as one; a smaller one is completed by the next raise.
class Betting {
 public:
  /// The most bets of a fixed-limit round, the big blind among them.
  static constexpr unsigned kMostBets = 4;
  /// "No limit" of raises, where a byte tells how many are left.
  static constexpr std::uint8_t kManyRaises = 255;

  /// @param players  of the hand; must outlive this object
  explicit Betting(HandPlayers& players) : players_(players) {}

  /// The first round; the blinds may be posted.
  void beginPreFlop(const Stakes& stakes);
  /// The blinds lie before their players.
  /// @param bigBlind  index of the player who has it; the first turn is the next one's
  void blindsPosted(std::size_t bigBlind) { passTurn(bigBlind + 1); }
  /// Another round. Nobody has bet yet.
  void begin(const Stakes& stakes, Street street);

  /// The index of the player whose turn it is; nothing when the round is over.
  std::optional<std::size_t> turn() const { return turn_; }
  /// What the player whose turn it is may do. Without a turn: nothing.
  const NextTurnOptions& options() const { return options_; }
  /// Plays one of the options and passes the turn on.
  /// @param amount  what the player adds; zero: the least
  /// @return whether it was open; nothing has changed otherwise
  bool act(UserAction action, RealMoneyType amount);

  /// How many raises are left in this round, or kManyRaises.
  std::uint8_t raisesLeft() const;
  /// The index of who bet or raised last in this round; nothing when nobody did.
  std::optional<std::size_t> aggressor() const { return aggressor_; }
  struct Uncalled {
    std::size_t player;  ///< the index
    RealMoneyType amount;
  };
  /// Gives back what nobody called, at the end of a round.
  /// @return nothing when every bet was called
  std::optional<Uncalled> returnUncalled();

 private:
  bool fixedLimit() const { return stakes_.limit == LimitType::FixedLimit; }
  bool anotherCanAct(std::size_t player) const;
  RealMoneyType toCall(std::size_t player) const;
  bool mayRaise(std::size_t player) const;
  void raiseTo(std::size_t player);
  void start(const Stakes& stakes, Street street);
  void passTurn(std::size_t first);
  void findOptions();

  HandPlayers& players_;
  Stakes stakes_;
  RealMoneyType size_;        // fixed limit: the bet; no limit: the least bet
  RealMoneyType level_;       // what a player must have bet to stay in
  RealMoneyType fullLevel_;   // without a short all-in on top of it
  RealMoneyType leastRaise_;  // no limit: by how much
  unsigned bets_ = 0;
  bool capped_ = false;  // the number of bets is
  std::optional<std::size_t> turn_;
  std::optional<std::size_t> aggressor_;
  NextTurnOptions options_;
};

}  // namespace poker::holdem
