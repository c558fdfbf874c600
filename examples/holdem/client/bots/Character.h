#pragma once

#include <CommandProcessor/types/Card.h>
#include <CommandProcessor/types/NextTurnOptions.h>
#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/types/UserAction.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace poker::holdem {

/// How a bot plays.
enum class Style {
  Tight,   ///< few hands, and those for what they are worth
  Loose,   ///< many hands; calls much, bluffs at times
  Random,  ///< anything that is open, whatever the cards
};

/// "tight", "loose", "random".
const char* toText(Style style);
/// Nothing for any other text.
std::optional<Style> styleFromText(std::string_view text);

/// What a player whose turn it is can see.
struct Situation {
  std::span<const Card> ownCards;  ///< two with faces; without them, who plays by the cards gives up
  std::span<const Card> board;     ///< up to five
  RealMoneyType pot;               ///< all pots and all bets
  RealMoneyType stack;
  RealMoneyType bigBlind;
  unsigned opponents = 1;                    ///< those who are still in the hand
  const NextTurnOptions* options = nullptr;  ///< what is open, null for nothing
  std::uint64_t hand = 0;                    ///< the number of the hand
  unsigned decision = 0;                     ///< how many decisions this player has made in the hand
  bool isTournament = false;                 ///< blinds grow: who has few of them left is all-in or out before the flop
};

/// One of the options.
struct Decision {
  UserAction action = UserAction::NoAction;
  RealMoneyType amount;  ///< what the player adds now

  friend bool operator==(const Decision&, const Decision&) = default;
};

/// Decides as a player of some style would. A seed, a style and a situation always give the same decision: it keeps
/// nothing between the calls, and any thread may ask.
class Character {
 public:
  /// @param seed  players of the same style differ by it
  Character(Style style, std::uint64_t seed) : style_(style), seed_(seed) {}

  /// Never folds when it can check. NoAction when no option is open.
  /// @throws std::invalid_argument  for cards that cannot come from one deck, or more than five on the board
  Decision decide(const Situation& situation) const;

 private:
  Style style_;
  std::uint64_t seed_;
};

}  // namespace poker::holdem
