#pragma once

#include <examples/holdem/client/rehearsal/Rehearsal.h>
#include <examples/holdem/shared/Endpoint.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace poker::holdem {

/// What the command line decides about a script.
struct ScriptSettings {
  Endpoint server;
  /// Of the hand-shake; without one each script takes the version that its story needs.
  std::optional<std::uint32_t> version;
  ClientSettings client;
  /// Whether maintenance will be announced before it begins.
  bool expectsAnnouncement = false;
  /// How long a script that waits for maintenance waits.
  std::chrono::milliseconds patience = std::chrono::minutes(1);
  /// How many connections the script that fills a server opens at most.
  std::size_t most = 256;
};

/// A client's part in a conversation, with what it expects of the server.
struct Script {
  std::string_view name;
  std::string_view story;
  /// Plays it.
  /// @throws ExpectationFailed, NotConnected
  void (*play)(Rehearsal& rehearsal, ScriptSettings settings);
};

std::span<const Script> scripts();
/// Null when there is none of that name.
const Script* findScript(std::string_view name);

}  // namespace poker::holdem
