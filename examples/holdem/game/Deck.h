#pragma once

#include <CommandProcessor/types/Card.h>

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <utility>

namespace poker::holdem {

/// A source of 64 random bits a call, such as std::mt19937_64.
template <class G>
concept RandomBits64 = std::uniform_random_bit_generator<G> && G::min()
== 0 && G::max() == UINT64_MAX;

/// The system's own randomness, for play that counts. One thread at a time.
/// Construction and draws throw std::exception when the system has none.
class SystemRandom {
 public:
  using result_type = std::uint64_t;
  static constexpr result_type min() { return 0; }
  static constexpr result_type max() { return UINT64_MAX; }
  result_type operator()();

 private:
  std::random_device device_;
};

/// A number below `n`, which is not 0; each is as likely as the others. Unlike the standard library's distributions, it
/// takes the same number from the same bits on every platform.
template <RandomBits64 Generator>
std::uint64_t drawBelow(Generator& generator, std::uint64_t n) {
  // As many of the smallest values as 2^64 has over a multiple of n would make some results more likely.
  const std::uint64_t surplus = (0 - n) % n;
  std::uint64_t bits = generator();
  while (bits < surplus) bits = generator();
  return bits % n;
}

/// The 52 cards, face up. One thread at a time.
class Deck {
 public:
  static constexpr std::size_t kCards = 52;

  /// All cards, by suit and rank.
  Deck();

  /// Collects all cards and shuffles them: all orders are equally likely, and the bits of the generator alone decide.
  template <RandomBits64 Generator>
  void shuffle(Generator& generator) {
    *this = Deck();
    for (std::size_t left = kCards; left > 1; --left) {
      std::swap(cards_[left - 1], cards_[static_cast<std::size_t>(drawBelow(generator, left))]);
    }
  }

  /// Puts these cards on top, the first one topmost; the others stay in their order below.
  /// @throws std::invalid_argument  when one is named twice, has no face or has been dealt; the deck stays as it was
  void stack(std::span<const Card> cards);

  /// Takes the top card.
  /// @throws std::logic_error  when none is left
  Card deal();
  /// How many cards are left.
  std::size_t remaining() const { return kCards - dealt_; }

 private:
  std::array<Card, kCards> cards_;
  std::size_t dealt_ = 0;
};

}  // namespace poker::holdem
