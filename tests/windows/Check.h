#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the program with 1 when `condition` does not hold, and says where.
#define CHECK(condition)                                                  \
  do {                                                                    \
    if (!(condition)) {                                                   \
      std::printf("%s:%d: not so: %s\n", __FILE__, __LINE__, #condition); \
      std::fflush(stdout);                                                \
      std::_Exit(1);                                                      \
    }                                                                     \
  } while (false)
