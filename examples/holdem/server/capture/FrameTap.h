#pragma once

#include <examples/holdem/server/House.h>
#include <examples/holdem/server/capture/FrameObserver.h>
#include <hostkit/TcpSession.h>

#include <cstdint>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

namespace poker::holdem {

/// Tells an observer the frames of the sessions, together with what the house knows of them.
class FrameTap {
 public:
  static constexpr std::string_view kLobby = "lobby";

  /// Both must outlive the tap, and the house must not run any more when the tap is gone.
  FrameTap(House& house, FrameObserver& observer);

  /// What SessionEvents::onBytes() tells.
  void frame(const TcpSession& session, FrameDirection direction, std::span<const std::uint8_t> bytes);
  /// The session has ended.
  void forget(const TcpSession& session) { connections_.erase(session.id().value()); }

 private:
  struct Connection {
    std::string client;
    FrameEnds ends;
  };

  Whereabouts locate(const ConnectionID& client);
  std::string_view nameOf(const Table& table);
  const Connection& connectionOf(const TcpSession& session);

  House& house_;
  FrameObserver& observer_;
  std::uint64_t frames_ = 0;
  std::unordered_map<std::int32_t, Connection> connections_;
  std::map<std::uint32_t, std::string_view> tables_;  // by number
  std::set<std::string, std::less<>> names_;
};

}  // namespace poker::holdem
