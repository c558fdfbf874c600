#pragma once

#include <string>

namespace poker {

/// All parts, one behind the other: texts, and single characters.
template <class... Parts>
std::string joined(const Parts&... parts) {
  std::string text;
  ((text += parts), ...);
  return text;
}

}  // namespace poker
