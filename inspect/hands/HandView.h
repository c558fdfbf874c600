#pragma once

#include <CommandProcessor/commands/table/TableCommands.h>
#include <CommandProcessor/types/ClientTableState.h>
#include <inspect/HandStory.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace poker {

/// What is known of a table while no hand is looked at.
struct TableFacts {
  std::string name;   ///< that the table tells; empty: not told yet
  std::string label;  ///< by which the capture tells it from others; the name where it does not
  std::uint32_t gameID = 0;
  std::uint32_t tournament = 0;
  std::size_t seats = 0;
  GameType game = GameType::TexasHoldem;
  LimitType limit = LimitType::None;  ///< None: not known, as are the amounts then
  RealMoneyType smallBlind;
  RealMoneyType bigBlind;
  RealMoneyType lowBet;
  RealMoneyType highBet;
};

/// A taken seat.
struct TableSeat {
  SeatID seat;
  std::string name;
  std::optional<RealMoneyType> stack;  ///< none: not told yet
};

/// One hand as one connection is told it, from what is sent alone. It believes everything; who doubts looks before it is
/// applied (HandAudit).
class HandView {
 public:
  enum class Phase {
    Begun,      ///< the seats are told
    Betting,    ///< cards are dealt
    RoundOver,  ///< the bets are in the pots
    Over,
  };
  struct Player {
    SeatID seat;
    std::string name;
    std::optional<RealMoneyType> start;  ///< the stack when the hand began; none: not known
    std::optional<RealMoneyType> stack;
    RealMoneyType bet;   ///< in this round
    RealMoneyType paid;  ///< in the whole hand, this round's bet included ...
    RealMoneyType dead;  ///< ... and what went into the pot beside it
    bool folded = false;
    std::vector<Card> cards;  ///< as this viewer may see them
    bool shown = false;       ///< to all

    bool canAct() const { return !folded && (!stack || *stack > kZeroMoney); }
  };

  /// A hand from its beginning.
  /// @param seats   of the table
  /// @param viewer  none for one who looks on
  HandView(const TableFacts& table, std::span<const TableSeat> seats, const SeatID& viewer, std::uint64_t number,
           const SeatIDSet& players);
  /// A hand into which the viewer comes.
  HandView(const TableFacts& table, const ClientTableState& state);

  std::uint64_t number() const { return story_.number; }
  const SeatID& viewer() const { return story_.viewer; }
  /// Whether it is seen from its beginning, and which one it is.
  bool isWhole() const { return whole_ && story_.number != 0; }
  bool isOver() const { return phase_ == Phase::Over; }
  Phase phase() const { return phase_; }
  /// Clockwise, from the left of the button as soon as that is told.
  const std::vector<Player>& players() const { return players_; }
  const Player* find(const SeatID& seat) const;
  std::size_t remaining() const;
  const SeatID& button() const { return story_.button; }
  const SeatID& smallBlindSeat() const { return smallBlindSeat_; }
  const SeatID& bigBlindSeat() const { return bigBlindSeat_; }
  const std::vector<Card>& board() const { return board_; }
  /// Of the finished rounds, as it was told last, without rake.
  const std::vector<RealMoneyType>& pots() const { return pots_; }
  const RealMoneyType& rake() const { return story_.rake; }
  /// What all have put in.
  RealMoneyType paid() const;
  GameType game() const { return story_.game; }
  LimitType limit() const { return story_.limit; }
  const RealMoneyType& smallBlind() const { return story_.smallBlind; }
  const RealMoneyType& bigBlind() const { return story_.bigBlind; }
  /// The bet of the round that is played; zero: not known.
  RealMoneyType betSize() const;
  std::uint32_t tournament() const { return story_.tournament; }
  bool isTournament() const { return story_.tournament != 0; }
  const std::string& tableName() const { return story_.table; }
  const std::string& label() const { return label_; }

  /// A viewer that nobody has told where it sits learns it from its cards.
  void setViewer(const SeatID& viewer) { story_.viewer = viewer; }
  void setBegan(const COleDateTime& began) { story_.began = began; }

  void apply(const SrvMoveDealChip& command);
  void apply(const SrvUserActionNotify& command);
  void apply(const SrvCardDeal& command);
  void apply(const SrvBetRoundComplete& command);
  void apply(const SrvPotCardDeal& command);
  void apply(const SrvShowPlayerCards& command);
  void apply(const SrvTUShowDown& command);

  /// What each pot of the bets so far holds, rake included, and who may win it (indexes into players()), by the rules
  /// alone.
  struct Share {
    RealMoneyType amount;
    std::vector<std::size_t> contenders;
  };
  std::vector<Share> shares() const;

  /// The hand as it is known by now. Cards that others have learned may be added to it.
  /// @param alsoKnown  hole cards by index into players(); empty where nobody was told them
  HandStory story(std::span<const std::vector<Card>> alsoKnown = {}) const;

 private:
  Player* playerAt(const SeatID& seat) { return const_cast<Player*>(std::as_const(*this).find(seat)); }
  void beginAtButton();
  void finishStory(HandStory& story) const;

  HandStory story_;  // without players, and without what is known at the end alone
  std::string label_;
  std::vector<Player> players_;
  std::vector<Card> board_;
  std::vector<RealMoneyType> pots_;
  std::vector<HandStory::Win> wins_;
  SeatID smallBlindSeat_;
  SeatID bigBlindSeat_;
  Phase phase_ = Phase::Begun;
  bool whole_ = true;
};

/// Whether the action is paid before the cards are dealt.
bool isPost(UserAction action);

}  // namespace poker
