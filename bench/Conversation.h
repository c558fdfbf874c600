#pragma once

#include <CommandProcessor/commands/AllCommands.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace poker::bench {

// The messages of a connection's life, as plain structs of fixed capacity that know nothing of pools, buffers or
// virtual calls: the limit that the library is measured against. One bounds check a message, then copies.

constexpr std::string_view kMaintenanceText = "The tables close for maintenance at midnight. Please finish your hand.";
constexpr std::string_view kNewServer = "table7.cards.example:9000";
constexpr std::string_view kCustomText = "Tournament lobby redesigned";

struct PlainMessage {
  enum Kind : std::uint8_t {
    HandShake,
    HandShaked,
    KeepAlive,
    KeepAliveReply,
    Ping,
    Maintenance,
    NewServer,
    NewVersion,
    Disconnected,
    Bye,
    kKinds
  };
  Kind kind;
  std::uint8_t first, second;
  std::uint32_t number;
  std::uint32_t length;
  char text[128];
};

/// One message of each kind, in the order of a conversation.
std::vector<PlainMessage> plainConversation();

/// Type code, family and fields of the message.
/// @return bytes written, 0 when there is no room
std::size_t encodeByHand(const PlainMessage& message, std::uint8_t* to, std::size_t room);

/// @return whether the bytes are a whole message
bool decodeByHand(const std::uint8_t* from, std::size_t size, PlainMessage& message);

/// A pooled command with the same content.
PokerCommandI& makeCommand(const PlainMessage& message);

/// An empty pooled command of the class that the frame names.
PokerCommandI& takeCommand(std::uint8_t family, std::uint8_t code);

}  // namespace poker::bench
