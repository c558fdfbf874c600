#include <examples/holdem/game/Deck.h>

#include <examples/holdem/game/CardText.h>

#include <algorithm>
#include <stdexcept>

namespace poker::holdem {

SystemRandom::result_type SystemRandom::operator()() {
  static_assert(std::random_device::min() == 0 && std::random_device::max() == UINT32_MAX);
  const result_type high = device_();
  return high << 32 | device_();
}

Deck::Deck() {
  auto place = cards_.begin();
  for (const auto suit : {Card::Suit::Club, Card::Suit::Diamond, Card::Suit::Heart, Card::Suit::Spade}) {
    for (auto rank = static_cast<unsigned>(Card::Rank::Two); rank <= static_cast<unsigned>(Card::Rank::Ace); ++rank) {
      *place++ = Card(suit, Card::Rank{rank});
    }
  }
}

void Deck::stack(std::span<const Card> cards) {
  std::array<Card, kCards> stacked = cards_;
  auto top = stacked.begin() + static_cast<std::ptrdiff_t>(dealt_);
  for (const Card& card : cards) {
    // What was put on top before is not searched, so a card that comes twice is not found.
    const auto found = std::find_if(top, stacked.end(), [&card](const Card& other) {
      return other.suit() == card.suit() && other.rank() == card.rank();
    });
    if (found == stacked.end()) throw std::invalid_argument("not in the deck any more: " + toText(card));
    std::rotate(top, found, found + 1);
    ++top;
  }
  cards_ = stacked;
}

Card Deck::deal() {
  if (dealt_ == kCards) throw std::logic_error("the deck is empty");
  return cards_[dealt_++];
}

}  // namespace poker::holdem
