#pragma once

#include <cstdint>

namespace poker {

/// Where a user wants to be known without logging on again. One byte; values without a name are carried as they are.
enum class SessionTarget : std::uint8_t {
  Cashier = 0,
  WebSite = 1,
  Support = 2,
};

}  // namespace poker
