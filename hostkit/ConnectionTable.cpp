#include <hostkit/ConnectionTable.h>

#include <atomic>
#include <limits>

namespace poker {
namespace {

constexpr std::int32_t kLast = std::numeric_limits<std::int32_t>::max();

constinit std::atomic<std::int32_t> lastGiven{0};

}  // namespace

ConnectionID nextConnectionID() noexcept {
  std::int32_t last = lastGiven.load(std::memory_order_relaxed);
  do {
    if (last == kLast) return {};
  } while (!lastGiven.compare_exchange_weak(last, last + 1, std::memory_order_relaxed));
  return last + 1;
}

std::uint32_t connectionIDsLeft() noexcept {
  return static_cast<std::uint32_t>(kLast - lastGiven.load(std::memory_order_relaxed));
}

}  // namespace poker
