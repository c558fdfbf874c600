#pragma once

#include <LogUtil/Log.h>

#include <fmt/format.h>

#include <utility>

namespace poker::holdem {

/// Logs a line as fmt writes it. Ours are a word or two and key=value pairs: "opened conn=3 peer=127.0.0.1:4000". What a
/// peer wrote goes through quoted() first.
template <class... Args>
void logLine(Log& log, unsigned level, fmt::format_string<Args...> format, Args&&... args) {
  if (level > Log::getLevel()) return;
  log.trace(level, "%s", fmt::format(format, std::forward<Args>(args)...).c_str());
}

}  // namespace poker::holdem
