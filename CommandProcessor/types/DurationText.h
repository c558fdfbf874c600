#pragma once

#include <CommandProcessor/platform/Export.h>

#include <cstdint>
#include <string>

namespace poker {

/// A duration for people: "30 minutes", "1 hour and 5 minutes", "2 days, 1 hour and 10 seconds". Parts that are zero
/// are left out.
/// @param seconds  below 1 gives "0 seconds"
COMMANDPROCESSOR_API std::string durationToString(std::int32_t seconds);

}  // namespace poker
