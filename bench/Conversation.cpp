#include "Conversation.h"

#include <CommandProcessor/wire/WireNumber.h>
#include <hostkit/CommandFactory.h>
#include <hostkit/CommandHandle.h>

#include <cstdlib>

namespace poker::bench {

namespace {

using Kind = PlainMessage::Kind;

struct Layout {
  std::uint8_t code, family;
};
constexpr Layout kLayouts[PlainMessage::kKinds] = {{203, 0}, {200, 1}, {128, 2}, {85, 1},  {127, 2},
                                                   {205, 1}, {35, 1},  {90, 1},  {201, 0}, {204, 0}};

PlainMessage plain(Kind kind, std::uint32_t number = 0, std::string_view text = {}, std::uint8_t first = 0,
                   std::uint8_t second = 0) {
  PlainMessage message{};
  message.kind = kind;
  message.first = first;
  message.second = second;
  message.number = number;
  message.length = static_cast<std::uint32_t>(text.size());
  std::memcpy(message.text, text.data(), text.size());
  return message;
}

template <class T, class... Arguments>
PokerCommandI& filled(const Arguments&... arguments) {
  return *poker::make<T>(arguments...).detach();
}

}  // namespace

std::vector<PlainMessage> plainConversation() {
  return {plain(Kind::HandShake, 12),
          plain(Kind::HandShaked),
          plain(Kind::KeepAlive, 5),
          plain(Kind::KeepAliveReply, 5),
          plain(Kind::Ping, 0, {}, 3, 200),
          plain(Kind::Maintenance, 0, kMaintenanceText, 1),
          plain(Kind::NewServer, 0, kNewServer),
          plain(Kind::NewVersion, 0, kCustomText, 1, 2),
          plain(Kind::Disconnected, 4),
          plain(Kind::Bye)};
}

std::size_t encodeByHand(const PlainMessage& message, std::uint8_t* to, std::size_t room) {
  if (room < 24 + message.length) return 0;
  std::uint8_t* place = to;
  *place++ = kLayouts[message.kind].code;
  *place++ = kLayouts[message.kind].family;
  const auto zeros = [&](std::size_t count) {
    std::memset(place, 0, count);
    place += count;
  };
  const auto number = [&] {
    wire::storeLittleEndian(place, message.number);
    place += sizeof message.number;
  };
  const auto text = [&] {
    std::memcpy(place, message.text, message.length);
    place += message.length;
    *place++ = 0;
  };
  switch (message.kind) {
    case Kind::HandShake:
      zeros(8);
      number();
      zeros(1);
      break;
    case Kind::KeepAlive:
    case Kind::KeepAliveReply:
      number();
      break;
    case Kind::Ping:
      *place++ = message.first;
      *place++ = message.second;
      break;
    case Kind::Maintenance:
      text();
      *place++ = message.first;
      break;
    case Kind::NewServer:
      text();
      break;
    case Kind::NewVersion:
      *place++ = message.first;
      *place++ = message.second;
      text();
      break;
    case Kind::Disconnected:
      zeros(3);
      number();
      break;
    case Kind::Bye:
      zeros(3);
      break;
    case Kind::HandShaked:
    case Kind::kKinds:
      break;
  }
  return static_cast<std::size_t>(place - to);
}

bool decodeByHand(const std::uint8_t* from, std::size_t size, PlainMessage& message) {
  if (size < 2) return false;
  const std::uint8_t* fields = from + 2;
  std::size_t left = size - 2;
  const auto text = [&](std::size_t skip, std::size_t behind) {
    if (left < skip + 1 + behind || left - behind - skip > sizeof message.text) return false;
    message.length = static_cast<std::uint32_t>(left - skip - behind - 1);
    std::memcpy(message.text, fields + skip, message.length);
    return true;
  };
  const auto number = [&](std::size_t at) {
    if (left < at + sizeof message.number) return false;
    message.number = wire::loadLittleEndian<std::uint32_t>(fields + at);
    return true;
  };
  const auto pair = [&](std::size_t at) {
    if (left < at + 2) return false;
    message.first = fields[at];
    message.second = fields[at + 1];
    return true;
  };
  switch (from[0]) {
    case 203:
      message.kind = Kind::HandShake;
      return number(8);
    case 200:
      message.kind = Kind::HandShaked;
      return true;
    case 128:
      message.kind = Kind::KeepAlive;
      return number(0);
    case 85:
      message.kind = Kind::KeepAliveReply;
      return number(0);
    case 127:
      message.kind = Kind::Ping;
      return pair(0);
    case 205:
      message.kind = Kind::Maintenance;
      if (!text(0, 1)) return false;
      message.first = fields[left - 1];
      return true;
    case 35:
      message.kind = Kind::NewServer;
      return text(0, 0);
    case 90:
      message.kind = Kind::NewVersion;
      return pair(0) && text(2, 0);
    case 201:
      message.kind = Kind::Disconnected;
      return number(3);
    case 204:
      message.kind = Kind::Bye;
      return left >= 3;
    default:
      return false;
  }
}

PokerCommandI& makeCommand(const PlainMessage& message) {
  switch (message.kind) {
    case Kind::HandShake:
      return filled<ClHandShake>(message.number);
    case Kind::HandShaked:
      return filled<SrvHandShaked>();
    case Kind::KeepAlive:
      return filled<ClKeepAlive>(message.number);
    case Kind::KeepAliveReply:
      return filled<SrvKeepAliveReply>(message.number);
    case Kind::Ping:
      return filled<ClPing>(message.first, static_cast<std::uint32_t>(message.second));
    case Kind::Maintenance:
      return filled<SrvMaintenance>(std::string_view(message.text, message.length),
                                    static_cast<MaintainID>(message.first));
    case Kind::NewServer:
      return filled<ServiceNotAvailable>(message.text);
    case Kind::NewVersion:
      return filled<SrvNewClientVersionAvail>(static_cast<SrvNewClientVersionAvail::VersionType>(message.first),
                                              static_cast<SrvNewClientVersionAvail::ShowStyle>(message.second),
                                              message.text);
    case Kind::Disconnected:
      return filled<SrvErrorDisconnected>(static_cast<SrvErrorDisconnected::ErrorCode>(message.number));
    case Kind::Bye:
      return filled<ClBye>();
    case Kind::kKinds:
      break;
  }
  std::abort();
}

PokerCommandI& takeCommand(std::uint8_t family, std::uint8_t code) {
  return CommandFactory::find(static_cast<ProcessorFamily>(family), code)->create();
}

}  // namespace poker::bench
