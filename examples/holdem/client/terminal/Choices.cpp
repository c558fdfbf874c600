#include <examples/holdem/client/terminal/Choices.h>

#include <examples/holdem/client/PlayerOptions.h>
#include <examples/holdem/client/terminal/Text.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>

namespace poker::holdem {

namespace {

struct Word {
  std::string_view letter, word;
  UserAction action;
  std::string_view shown;
};
constexpr std::array kWords = {
    Word{"f", "fold", UserAction::Fold, "[f]old"},    Word{"k", "check", UserAction::Check, "chec[k]"},
    Word{"c", "call", UserAction::Call, "[c]all"},    Word{"b", "bet", UserAction::Bet, "[b]et"},
    Word{"r", "raise", UserAction::Raise, "[r]aise"}, Word{"a", "all-in", UserAction::AllIn, "[a]ll-in"},
};

const Word* find(std::string_view text) {
  const auto place =
      std::find_if(kWords.begin(), kWords.end(), [&](const Word& it) { return it.letter == text || it.word == text; });
  return place == kWords.end() ? nullptr : &*place;
}

/// "8-196", "4"; empty for what costs nothing.
std::string rangeText(const std::pair<RealMoneyType, RealMoneyType>& range) {
  if (range.second == kZeroMoney && range.first == kZeroMoney) return {};
  if (range.first >= range.second) return range.first.toString();
  return range.first.toString() + "-" + range.second.toString();
}

}  // namespace

std::string choicesText(const NextTurnOptions& options) {
  std::string text;
  for (const Word& word : kWords) {
    const auto option = options.options().find(word.action);
    if (option == options.options().end()) continue;
    const std::string range = rangeText(option->second);
    text += fmt::format("{}{}{}{}", text.empty() ? "" : "  ", word.shown, range.empty() ? "" : " ", range);
  }
  return text;
}

bool isChoice(std::string_view line) { return find(line.substr(0, line.find(' '))) != nullptr; }

Choice choiceFromText(std::string_view line, const NextTurnOptions& options) {
  const std::size_t blank = line.find(' ');
  const std::string_view amount = blank == std::string_view::npos ? std::string_view() : line.substr(blank + 1);
  const Word* word = find(line.substr(0, blank));
  const auto& open = options.options();
  Choice choice;
  if (word == nullptr) {
    choice.complaint = fmt::format("\"{}\" is none of these: {}", escaped(line), choicesText(options));
    return choice;
  }
  choice.action = word->action;
  // Who has nothing to call checks.
  if (choice.action == UserAction::Call && !open.contains(UserAction::Call)) choice.action = UserAction::Check;
  const auto option = open.find(choice.action);
  if (option == open.end()) {
    choice.complaint = fmt::format("You cannot {} now: {}", word->word, choicesText(options));
    return choice;
  }
  const auto [least, most] = option->second;
  if (amount.empty()) {
    if (most > least)
      choice.complaint = fmt::format("{} takes what you add: {}.", word->word, rangeText(option->second));
    return choice;
  }
  const std::optional<RealMoneyType> money = moneyFromText(amount);
  if (!money || *money < least || *money > std::max(least, most)) {
    const std::string range = rangeText(option->second);
    choice.complaint =
        range.empty() ? fmt::format("{} takes no amount.", word->word) : fmt::format("{} takes {}.", word->word, range);
  } else {
    choice.amount = *money;
  }
  return choice;
}

}  // namespace poker::holdem
