#include <examples/holdem/game/CardText.h>

#include <cstddef>
#include <iterator>

namespace poker::holdem {

namespace {

constexpr std::string_view kRanks = "23456789TJQKA";
constexpr std::string_view kLetters = "CDHS";
constexpr std::string_view kSigns[] = {"♣", "♦", "♥", "♠"};

constexpr char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// Takes a card off the front of the text.
std::optional<Card> takeCard(std::string_view& text) {
  const bool ten = text.starts_with("10");
  if (text.empty()) return std::nullopt;
  const std::size_t rank = kRanks.find(ten ? 'T' : upper(text.front()));
  if (rank == std::string_view::npos) return std::nullopt;
  text.remove_prefix(ten ? 2 : 1);
  for (std::size_t suit = 0; suit < kLetters.size(); ++suit) {
    const bool sign = text.starts_with(kSigns[suit]);
    if (!sign && (text.empty() || upper(text.front()) != kLetters[suit])) continue;
    text.remove_prefix(sign ? kSigns[suit].size() : 1);
    return Card(static_cast<Card::Suit>(suit + 1), static_cast<Card::Rank>(rank + 2));
  }
  return std::nullopt;
}

}  // namespace

std::string toText(const Card& card) {
  const std::size_t suit = static_cast<std::size_t>(card.suit()) - 1;  // without a face, both become large numbers
  const std::size_t rank =
      static_cast<std::size_t>(card.rank() == Card::Rank::LowAce ? Card::Rank::Ace : card.rank()) - 2;
  if (card.visibility() == Card::Visibility::Hidden || suit >= std::size(kSigns) || rank >= kRanks.size()) return "??";
  return kRanks[rank] + std::string(kSigns[suit]);
}

std::string toText(std::span<const Card> cards) {
  std::string text;
  for (const Card& card : cards) {
    if (!text.empty()) text += ' ';
    text += toText(card);
  }
  return text;
}

std::optional<Card> cardFromText(std::string_view text) {
  const std::optional<Card> card = takeCard(text);
  return text.empty() ? card : std::nullopt;
}

std::optional<std::vector<Card>> cardsFromText(std::string_view text) {
  std::vector<Card> cards;
  for (;;) {
    while (text.starts_with(' ')) text.remove_prefix(1);
    if (text.empty()) return cards;
    const std::optional<Card> card = takeCard(text);
    if (!card) return std::nullopt;
    cards.push_back(*card);
  }
}

}  // namespace poker::holdem
