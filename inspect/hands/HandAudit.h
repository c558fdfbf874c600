#pragma once

#include <inspect/capture/CapturedFrame.h>
#include <inspect/hands/BettingRound.h>
#include <inspect/hands/HandView.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace poker {

/// Where something was said.
struct SaidAt {
  std::uint64_t command = 0;  ///< its number in the capture
  std::uint64_t offset = 0;
  CommandDirection direction = CommandDirection::ServerToClient;
};

/// What is wrong with one command.
struct HandFault {
  SaidAt at;
  std::string text;
  /// Of what one viewer alone may see: it stands, whatever else is wrong with what the viewer is told.
  bool isLeak = false;
};

/// What a player's own connection has said and heard of the turn.
struct OwnTurn {
  bool hearsClient = false;              ///< what the player sends is in the capture, too
  std::optional<NextTurnOptions> asked;  ///< the options of the turn that is open
  std::uint32_t answers = 0;             ///< since then: mask of actions
  std::uint32_t chosen = 0;              ///< in advance, in this hand or the last one: mask of actions
};

/// Judges what one connection is told of one hand, each command before HandView believes it. What is not known is not
/// judged; after a fault, what follows from it is not judged either.
class HandAudit {
 public:
  /// @param hand  must outlive the audit
  explicit HandAudit(const HandView& hand) : hand_(hand) {}

  const std::vector<HandFault>& faults() const { return faults_; }
  /// The hand's number; a table's hands go up.
  void begin(const SaidAt& at, std::uint64_t lastNumber);
  /// The viewer comes into the hand.
  void join(const SaidAt& at, const ClientTableState& state);
  /// What the last hand at the table was, when this one follows it.
  void follow(const HandView& last);

  // Each before the hand itself knows it.

  void check(const SaidAt& at, const SrvMoveDealChip& command);
  void check(const SaidAt& at, const SrvPostBlind& command);
  void check(const SaidAt& at, const SrvUserActionNotify& command, const OwnTurn& own);
  void check(const SaidAt& at, const SrvCardDeal& command);
  void check(const SaidAt& at, const SrvUserTurn& command);
  void check(const SaidAt& at, const SrvBetRoundComplete& command);
  void check(const SaidAt& at, const SrvPotCardDeal& command);
  void check(const SaidAt& at, const SrvShowPlayerCards& command);
  void check(const SaidAt& at, const SrvTUShowDown& command);
  /// Between hands, the state is not one of the hand's; otherwise how a seat stands.
  void check(const SaidAt& at, const SrvUserStateOnTable& command);
  /// The viewer is told anew how the table stands.
  void check(const SaidAt& at, const ClientTableState& state);

  // Each when the hand knows it.

  void applied(const SrvUserActionNotify& command);
  void applied(const SrvCardDeal& command);
  void applied(const SrvPotCardDeal& command);

  void report(const SaidAt& at, std::string text, bool isLeak = false);

  /// Whether the stacks at the end are what was told, and what was told is sound.
  bool knowsStacks() const { return !isConfused_; }

 private:
  struct Blinds {
    SeatID button, small, big;
    std::size_t players;
  };

  void post(const SaidAt& at, const SrvUserActionNotify& command, const HandView::Player& player);
  void uncalled(const SaidAt& at, const SrvUserActionNotify& command, const HandView::Player& player);
  bool act(const SaidAt& at, const SrvUserActionNotify& command, const HandView::Player& player);
  bool wager(const SaidAt& at, UserAction action, std::size_t index, const RealMoneyType& put);
  void choice(const SaidAt& at, const SrvUserActionNotify& command, const RealMoneyType& put, const OwnTurn& own);
  bool amounts(const SaidAt& at, const SrvUserActionNotify& command, const HandView::Player& player);
  void fail(const SaidAt& at, std::string text);
  void pots(const SaidAt& at, const SrvBetRoundComplete& command);
  void hiddenCards(const SaidAt& at, const SeatID& seat, std::span<const Card> cards);
  void newCards(const SaidAt& at, std::span<const Card> cards, const char* whose, const SeatID& owner);
  void wins(const SaidAt& at, const SrvTUShowDown& command);
  void winners(const SaidAt& at, const SrvTUShowDown& command);
  void beginRound();
  bool bettingIsOver() const;
  bool mayShow() const;
  std::size_t indexOf(const HandView::Player& player) const {
    return static_cast<std::size_t>(&player - hand_.players().data());
  }

  const HandView& hand_;
  std::vector<HandFault> faults_;
  std::optional<Blinds> last_;
  std::optional<BettingRound> round_;  // none: not judged
  SeatID asked_;                       // whose turn was told
  SeatID due_;                         // whose blind was told ...
  std::uint32_t dueBlind_ = 0;
  bool smallPosted_ = false;
  bool bigPosted_ = false;
  std::uint8_t raisesLeft_ = 255;
  bool isConfused_ = false;  // after a fault, of which others may be mere consequences
};

/// "seat 3".
std::string seatText(const SeatID& seat);
/// What the action does: "raises", "posts the small blind".
std::string actionText(UserAction action);

}  // namespace poker
