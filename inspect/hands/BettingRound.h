#pragma once

#include <inspect/hands/HandView.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace poker {

/// The rules of one betting round: whose turn it is, and what may be done.
///
/// No limit: a raise is at least as large as the last full bet or raise. An all-in for less raises the price, and opens
/// the betting again only for who faces a full raise more than when acting last.
/// Fixed limit: an all-in of at least half a bet counts as one; a smaller one is completed by the next raise.
class BettingRound {
 public:
  /// A round begins; before the flop, blinds are posted.
  /// @param hand  must outlive the round; its players stay in their places
  explicit BettingRound(const HandView& hand);

  /// The index of the player whose turn it is; none when the round is over.
  std::optional<std::size_t> turn() const;
  RealMoneyType toCall(std::size_t player) const;
  /// What a player must have bet to stay in.
  const RealMoneyType& level() const { return level_; }
  bool mayRaise(std::size_t player) const;
  /// What a player must have bet after a raise, unless it is all-in.
  RealMoneyType leastRaiseTo() const { return isFixed() ? fullLevel_ + size_ : level_ + leastRaise_; }
  bool isFixed() const { return hand_->limit() == LimitType::FixedLimit; }

  /// A player has acted, and the hand knows it.
  void acted(std::size_t player);

 private:
  struct Standing {
    bool acted = false;
    RealMoneyType level;  // when the player acted last
    unsigned bets = 0;
  };

  bool anotherCanAct(std::size_t player) const;

  const HandView* hand_;
  std::vector<Standing> standings_;
  RealMoneyType size_;
  RealMoneyType level_;
  RealMoneyType fullLevel_;  // without a short all-in on top of it
  RealMoneyType leastRaise_;
  unsigned bets_ = 0;
  std::size_t next_ = 0;
};

}  // namespace poker
