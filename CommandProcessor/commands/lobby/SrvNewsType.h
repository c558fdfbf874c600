#pragma once

#include <cstdint>

namespace poker {

/// The message numbers of SrvNews that client and server agree on. Other numbers are carried as they are.
enum class SrvNewsType : std::int32_t {
  Welcome = 0,      ///< the line that greets the user
  Headlines = 1,    ///< what is new in the house
  Tournaments = 2,  ///< those that start soon
  Promotions = 3,
  Maintenance = 4,  ///< when the server will be away
};

}  // namespace poker
