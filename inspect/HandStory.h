#pragma once

#include <CommandProcessor/platform/COleDateTime.h>
#include <CommandProcessor/types/Card.h>
#include <CommandProcessor/types/GameType.h>
#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/types/TypeWrapper.h>
#include <CommandProcessor/types/UserAction.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace poker {

/// One hand of poker as one viewer knows it, played to its end or not. Whoever fills it decides what the viewer knows: no
/// text tells the face of a card that is Card::Visibility::Hidden.
struct HandStory {
  struct Player {
    SeatID seat;
    std::string name;         ///< any bytes
    RealMoneyType stack;      ///< when the hand began
    std::vector<Card> cards;  ///< Shown: turned up for all to see. HiddenOwner: known to the viewer
    std::string value;        ///< in words, what cards that were turned up are worth; empty: not told
  };
  struct Action {
    SeatID seat;
    /// NoAction: what nobody called goes back to the player. Post: what who comes in late owes.
    UserAction action = UserAction::NoAction;
    RealMoneyType amount;  ///< what the player adds, or gets back
    RealMoneyType dead;    ///< what of it goes into the pot beside the player's bet
    bool allIn = false;    ///< the player has nothing left behind
  };
  struct Round {
    std::vector<Card> board;  ///< the cards that came to the board when it began
    std::vector<Action> actions;
  };
  struct Win {
    SeatID seat;
    RealMoneyType amount;
  };
  struct Pot {
    RealMoneyType amount;  ///< without rake
    std::vector<Win> wins;
  };

  std::uint64_t number = 0;
  std::uint32_t tournament = 0;  ///< 0: a ring game
  std::string table;             ///< any bytes
  std::size_t seats = 0;         ///< that the table has; 0: not known
  GameType game = GameType::TexasHoldem;
  LimitType limit = LimitType::NoLimit;
  RealMoneyType smallBlind;
  RealMoneyType bigBlind;
  RealMoneyType lowBet;                       ///< fixed limit: the bet of the early rounds ...
  RealMoneyType highBet;                      ///< ... and of the late ones
  COleDateTime began{0, COleDateTime::null};  ///< null: not known
  SeatID button;                              ///< nobody may sit there
  SeatID viewer;                              ///< whose cards are told as dealt; none for one who looked on
  bool tellsAllDealt = false;                 ///< for the server's own eyes: all cards that are known are told as dealt

  std::vector<Player> players;
  std::vector<Action> posts;      ///< blinds and whatever else was paid before the cards
  std::vector<Round> rounds;      ///< of betting, the one before the flop first
  std::vector<SeatID> finalists;  ///< who was in to the end, the first one to show first; one alone need not show
  std::vector<Pot> pots;          ///< the main pot first
  RealMoneyType rake;
  bool over = false;  ///< otherwise finalists, pots and rake mean nothing
};

/// The hand as players write it down: a head with stakes and time, seats, posts, the betting street by street, the
/// show-down, and a summary with a line a seat. Lines of printable ASCII end in '\n'; names are escaped. Seats have the
/// numbers that they have on the wire, from 0; amounts have two decimals, times are UTC.
std::string toText(const HandStory& story);

}  // namespace poker
