#pragma once

#include <CommandProcessor/platform/Export.h>

#include <cstdint>

namespace poker {

/// What a player can do at a table, and what the dealer announces about a player. Each value is a bit of its own, so
/// that several make a mask (actionBit()). Travels as 32 bits; values without a name are carried as they are.
enum class UserAction : std::uint32_t {
  NoAction = 0,
  Ante = 0x1,
  KillBlind = 0x2,
  Check = 0x4,
  Bet = 0x8,
  Call = 0x10,
  Raise = 0x20,
  Fold = 0x40,
  BringIn = 0x80,
  BigRaise = 0x100,
  Post = 0x200,
  SittingOut = 0x800,
  AllIn = 0x1000,
  BigBlind = 0x2000,
  SmallBlind = 0x4000,
  ShowCards = 0x20000,
  MuckCards = 0x40000,
  Straddle = 0x100000,
  WaitBigBlind = 0x200000,
};

/// The action's bit in a mask of actions.
constexpr std::uint32_t actionBit(UserAction action) { return static_cast<std::uint32_t>(action); }

/// What the chat says of a player who does this: "raises". "Unknown" for NoAction and codes without a name. Never null.
COMMANDPROCESSOR_API const char* actionCodeToStringForChat(UserAction action);
/// What the sign at the player's seat says: "Raises". "Unknown" for codes without a name. Never null.
COMMANDPROCESSOR_API const char* actionCodeToStringForSign(UserAction action);
/// For logs: "Raise ". Some end in a blank, some named actions have no text of their own. Never null.
COMMANDPROCESSOR_API const char* actionCodeToStringForLog(UserAction action);

}  // namespace poker
