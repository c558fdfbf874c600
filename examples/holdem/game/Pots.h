#pragma once

#include <CommandProcessor/types/RealMoneyType.h>
#include <examples/holdem/game/HandPlayer.h>

#include <array>
#include <bitset>
#include <cstddef>
#include <vector>

namespace poker::holdem {

/// The pots of a hand: the main pot, and a side pot for each further amount that somebody is all-in for.
class Pots {
 public:
  struct Share {
    RealMoneyType amount;               ///< without rake
    std::bitset<kMaxSeats> contenders;  ///< by their index in the hand
  };
  using const_iterator = const Share*;

  /// Works out the pots from what the players have paid, which is all called.
  /// @param rake  what the house takes; nothing before there is a flop
  void collect(const HandPlayers& players, const RakeRule& rake);
  void clear();

  const Share* begin() const { return shares_.data(); }
  const Share* end() const { return shares_.data() + size_; }
  std::size_t size() const { return size_; }
  const Share& operator[](std::size_t i) const { return shares_[i]; }
  const RealMoneyType& rake() const { return rake_; }

 private:
  std::array<Share, kMaxSeats> shares_;
  std::size_t size_ = 0;
  RealMoneyType rake_;
};

}  // namespace poker::holdem
