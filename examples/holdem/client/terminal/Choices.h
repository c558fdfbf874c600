#pragma once

#include <CommandProcessor/types/NextTurnOptions.h>

#include <string>
#include <string_view>

namespace poker::holdem {

/// "[f]old  [c]all 4  [r]aise 8-196  [a]ll-in 196": what a person may type.
std::string choicesText(const NextTurnOptions& options);

/// What a person typed at the turn: an action with its amount, or why it is none.
struct Choice {
  UserAction action = UserAction::NoAction;
  RealMoneyType amount;   ///< zero: the least
  std::string complaint;  ///< empty for a good choice
};

/// Reads "f", "call", "r 24", "a", ...
/// @param options  what is open; a good choice is one of these
Choice choiceFromText(std::string_view line, const NextTurnOptions& options);
/// Whether the line's first word is one that choiceFromText() knows, whatever is open.
bool isChoice(std::string_view line);

}  // namespace poker::holdem
