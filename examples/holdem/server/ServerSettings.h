#pragma once

#include <examples/holdem/server/House.h>
#include <examples/holdem/shared/Endpoint.h>
#include <examples/holdem/shared/Protocol.h>
#include <hostkit/SessionLimits.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace poker::holdem {

/// What the command line decides about a server.
struct ServerSettings {
  Endpoint listen{"127.0.0.1", 0};
  /// So many clients are served at once; one more is answered SrvBusy.
  std::size_t maxConnections = 1000;

  /// A client of an older version than this is told that there is a newer one ...
  std::uint32_t currentVersion = kProtocolVersion;
  /// ... and one of an older version than this is not served.
  std::uint32_t minimumVersion = kOldestVersion;
  /// Added to the standard text of either notice.
  std::string versionText = "It is at poker.example/download.";

  /// Set when this server serves nobody any more: where to go instead.
  std::optional<Endpoint> movedTo;

  std::string announcement = "Maintenance in ten minutes. Please finish your hand.";
  std::string farewell = "Maintenance now. Back in half an hour.";
  /// From the farewell to the end of the sessions that are still there.
  std::chrono::milliseconds grace = std::chrono::seconds(10);

  SessionLimits limits = SessionLimits::forServer();

  HouseSettings house;
};

}  // namespace poker::holdem
