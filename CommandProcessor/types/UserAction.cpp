#include <CommandProcessor/types/UserAction.h>

#include <algorithm>
#include <iterator>

namespace poker {

namespace {

struct Texts {
  UserAction action;
  const char* chat;
  const char* sign;
  const char* log;
};

constexpr char kNoLog[] = "error. Invalid action code!!!!";

// In code order. The spellings are what clients and logs have always shown.
constexpr Texts kTexts[] = {
    {UserAction::NoAction, "Unknown", "no action", kNoLog},
    {UserAction::Ante, "ante", "Ante", "Ante "},
    {UserAction::KillBlind, "has kill blind", "Kill Blind", kNoLog},
    {UserAction::Check, "checks", "Checks", "Check "},
    {UserAction::Bet, "bets", "Bets", "Bet "},
    {UserAction::Call, "calls", "Calls", "Call "},
    {UserAction::Raise, "raises", "Raises", "Raise "},
    {UserAction::Fold, "folds", "Folds", "Fold "},
    {UserAction::BringIn, "bring in", "Bring in", "Bring in "},
    {UserAction::BigRaise, "makes big raise", "Big raise", kNoLog},
    {UserAction::Post, "posts", "Posts", "Post "},
    {UserAction::SittingOut, "sitting out", "Sitting Out", kNoLog},
    {UserAction::AllIn, "allin", "AllIn", "AllIn"},
    {UserAction::BigBlind, "has big blind", "Big Blind", "BiglBlind"},
    {UserAction::SmallBlind, "has small blind", "Small Blind", "SmallBlind "},
    {UserAction::ShowCards, "shows cards", "Shows Cards", "ShowCards"},
    {UserAction::MuckCards, "mucks cards", "Mucks Cards", "MuckCards"},
    {UserAction::Straddle, "straddles", "Straddle", "Straddle"},
    {UserAction::WaitBigBlind, "wait BB", "Wait For BigBlind", kNoLog},
};

constexpr Texts kFallback = {UserAction::NoAction, "Unknown", "Unknown", kNoLog};

const Texts& textsOf(UserAction action) {
  const auto* const place = std::lower_bound(std::begin(kTexts), std::end(kTexts), action,
                                             [](const Texts& row, UserAction code) { return row.action < code; });
  return place != std::end(kTexts) && place->action == action ? *place : kFallback;
}

}  // namespace

const char* actionCodeToStringForChat(UserAction action) { return textsOf(action).chat; }

const char* actionCodeToStringForSign(UserAction action) { return textsOf(action).sign; }

const char* actionCodeToStringForLog(UserAction action) { return textsOf(action).log; }

}  // namespace poker
