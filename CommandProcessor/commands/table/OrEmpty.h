#pragma once

namespace poker {

/// The text; "" for a null pointer.
inline const char* orEmpty(const char* text) { return text != nullptr ? text : ""; }

}  // namespace poker
