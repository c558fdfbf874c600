#include <examples/holdem/server/capture/FrameTap.h>

#include <asio/ip/address.hpp>

#include <algorithm>
#include <charconv>
#include <chrono>

namespace poker::holdem {

namespace {

/// From "127.0.0.1:4000" or "[::1]:4000"; all zeros when it is neither.
NetworkEnd endFrom(const std::string& text) {
  NetworkEnd end;
  const std::size_t colon = text.rfind(':');
  if (colon == std::string::npos) return end;
  std::string host = text.substr(0, colon);
  if (host.size() > 1 && host.front() == '[') host = host.substr(1, host.size() - 2);
  std::error_code noAddress;
  const asio::ip::address address = asio::ip::make_address(host, noAddress);
  if (noAddress) return end;
  if (address.is_v6()) {
    const auto bytes = address.to_v6().to_bytes();
    std::copy(bytes.begin(), bytes.end(), end.address.begin());
  } else {
    const auto bytes = address.to_v4().to_bytes();
    std::copy(bytes.begin(), bytes.end(), end.address.begin());
  }
  end.isV6 = address.is_v6();
  std::from_chars(text.data() + colon + 1, text.data() + text.size(), end.port);
  return end;
}

}  // namespace

FrameTap::FrameTap(House& house, FrameObserver& observer)
    : house_(house), observer_(observer), names_{std::string(kLobby)} {
  house_.outbox().notePlaces([this](const ConnectionID& client) { return locate(client); });
  // In the order of their numbers, not in that in which somebody comes to them.
  for (const auto& table : house_.tables()) nameOf(*table);
}

void FrameTap::frame(const TcpSession& session, FrameDirection direction, std::span<const std::uint8_t> bytes) {
  const Connection& connection = connectionOf(session);
  // What does not come through the outbox is said at once, for example a farewell to everybody.
  const Whereabouts* sentTo = direction == FrameDirection::Out ? house_.outbox().placeSentTo() : nullptr;
  const Whereabouts place = sentTo != nullptr ? *sentTo : locate(session.id());
  const CapturedFrame frame = {
      .bytes = bytes,
      .number = ++frames_,
      .time = std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now().time_since_epoch())
                  .count(),
      .direction =
          direction == FrameDirection::In ? CommandDirection::ClientToServer : CommandDirection::ServerToClient,
      .connection = connection.client,
      .table = place.table,
      .hand = place.hand,
  };
  observer_.onFrame(frame, connection.ends);
}

Whereabouts FrameTap::locate(const ConnectionID& client) {
  const Table* table = house_.tableOf(client);
  if (table == nullptr) return {kLobby};
  return {nameOf(*table), table->handTold()};
}

/// The table's name, with its number where another one has that name.
std::string_view FrameTap::nameOf(const Table& table) {
  const auto [place, isNew] = tables_.try_emplace(table.settings().gameID);
  if (isNew) {
    std::string name = table.settings().name;
    while (!names_.insert(name).second) name += " #" + std::to_string(table.settings().gameID);
    place->second = *names_.find(name);
  }
  return place->second;
}

const FrameTap::Connection& FrameTap::connectionOf(const TcpSession& session) {
  const auto [place, isNew] = connections_.try_emplace(session.id().value());
  if (isNew) {
    place->second = {session.remoteAddress(), {endFrom(session.remoteAddress()), endFrom(session.localAddress())}};
  }
  return place->second;
}

}  // namespace poker::holdem
