#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace poker::holdem {

/// Where a server listens.
struct Endpoint {
  std::string host;
  std::uint16_t port = 0;

  /// "127.0.0.1:4000", "poker.example:4000", "[::1]:4000". Nothing when the text is none of these.
  static std::optional<Endpoint> parse(std::string_view text);
  /// As parse() takes it.
  std::string toString() const;
};

}  // namespace poker::holdem
