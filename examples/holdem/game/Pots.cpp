#include <examples/holdem/game/Pots.h>

#include <algorithm>

namespace poker::holdem {

void Pots::clear() {
  size_ = 0;
  rake_ = kZeroMoney;
}

void Pots::collect(const HandPlayers& players, const RakeRule& rake) {
  clear();
  RealMoneyType reached;
  for (;;) {
    // The next pot reaches up to the least that a player who is still in has paid beyond the last one.
    RealMoneyType top;
    for (const HandPlayer& player : players) {
      if (!player.folded && player.paid > reached && (top == kZeroMoney || player.paid < top)) top = player.paid;
    }
    if (top == kZeroMoney) break;
    Share& share = shares_[size_++];
    share = {};
    for (std::size_t i = 0; i < players.size(); ++i) {
      const HandPlayer& player = players[i];
      share.amount += std::max(std::min(player.paid, top) - reached, kZeroMoney);
      if (!player.folded && player.paid >= top) share.contenders.set(i);
    }
    reached = top;
  }
  if (size_ == 0) return;
  for (const HandPlayer& player : players) {
    shares_[0].amount += player.dead;
    // Nobody who is in reaches so far: it was called before, and folded to.
    shares_[size_ - 1].amount += std::max(player.paid - reached, kZeroMoney);
  }
  for (std::size_t i = 0; i < size_; ++i) {
    const RealMoneyType part = std::min(shares_[i].amount.scaled(rake.perTenThousand, 10'000), rake.cap - rake_);
    shares_[i].amount -= part;
    rake_ += part;
  }
}

}  // namespace poker::holdem
