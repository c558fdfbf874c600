#pragma once

#include <cstdint>

namespace poker::ChatMsgTypes {

/// What kind of chat line it is. One byte; values without a name are carried as they are.
enum ChatType : std::uint8_t {
  PlayerChat = 0,    ///< from a player who sits at the table
  ObserverChat = 1,  ///< from somebody who looks on
  DealerChat = 2,    ///< from the dealer: what happens in the hand
  HostChat = 3,      ///< from the host of the house
  SystemChat = 4,    ///< from the server itself
};

/// How a chat line is to be shown. One byte; values without a name are carried as they are.
enum ChatStyle : std::uint8_t {
  Normal = 0,
  Bold = 1,
  Highlighted = 2,  ///< also when the player has switched the chat off
};

}  // namespace poker::ChatMsgTypes
