#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace poker {

/// One end of a TCP connection.
struct NetworkEnd {
  bool isV6 = false;
  std::array<std::uint8_t, 16> address = {};  ///< in the order of the network; of IPv4 the first four bytes
  std::uint16_t port = 0;

  friend bool operator==(const NetworkEnd&, const NetworkEnd&) = default;
};

/// "127.0.0.1:4000" or "[::1]:4000".
std::string toText(const NetworkEnd& end);

}  // namespace poker
