#include <CommandProcessor/core/PokerCommandI.h>

#include <csignal>

namespace poker {

PokerCommandI::~PokerCommandI() { mark(0); }

PokerCommandI* PokerCommandI::clone() { return nullptr; }

bool PokerCommandI::canCompress() { return true; }

void PokerCommandI::release() {}

#if defined(__GNUC__)
__attribute__((no_sanitize("undefined")))
#endif
int PokerCommandI::checkValidAndThrow() {
  if (marker() != kValidMarker) {
    volatile int divisor = -1;
    divisor = divisor + 1;
    mark(static_cast<std::uint32_t>(static_cast<int>(marker()) / divisor));
    // Some processors divide by zero without a fault.
    std::raise(SIGFPE);
  }
  return static_cast<int>(marker());
}

}  // namespace poker
