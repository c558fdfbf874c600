#pragma once

#include <CommandProcessor/types/Card.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace poker::holdem {

/// "A♠", "T♥", in UTF-8; "??" for a card that is hidden or has no face.
std::string toText(const Card& card);
/// The same of all, with blanks between.
std::string toText(std::span<const Card> cards);

/// Reads "As", "td", "10h", "A♠": a card that is shown. Nothing when the text is anything else or more than that.
std::optional<Card> cardFromText(std::string_view text);

/// Reads cards with blanks between them or none: "AsKd Qh". No card for an empty text, nothing when one cannot be read.
/// Does not look for doubles.
std::optional<std::vector<Card>> cardsFromText(std::string_view text);

}  // namespace poker::holdem
