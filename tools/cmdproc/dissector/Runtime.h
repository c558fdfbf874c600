#pragma once

#include <string_view>

namespace poker::cmdproc {

/// The text of Dissector.lua, which the build puts here.
extern const std::string_view kDissectorRuntime;

}  // namespace poker::cmdproc
