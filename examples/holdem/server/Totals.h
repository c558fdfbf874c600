#pragma once

#include <LogUtil/Log.h>
#include <hostkit/TcpSession.h>

#include <cstdint>
#include <map>
#include <span>
#include <string_view>

namespace poker::holdem {

/// Counts the commands of each class and their bytes, each way. One thread.
class Totals {
 public:
  /// @param frame  with its length slot; what names no class is counted as "none"
  void count(FrameDirection direction, std::span<const std::uint8_t> frame);
  /// A line a class and direction, then the sums.
  void log(Log& log) const;

 private:
  struct Count {
    std::uint64_t commands = 0;
    std::uint64_t bytes = 0;
  };
  using Counts = std::map<std::string_view, Count>;

  Counts in_;
  Counts out_;
};

}  // namespace poker::holdem
