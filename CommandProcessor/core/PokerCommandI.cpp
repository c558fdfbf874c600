#include <CommandProcessor/core/PokerCommandI.h>

#include <csignal>

#ifdef CP_CHECKING
#include <CommandProcessor/platform/TypeName.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <typeinfo>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define CP_POISONING
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define CP_POISONING
#endif
#ifdef CP_POISONING
#include <sanitizer/asan_interface.h>
#endif
#endif

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

#ifdef CP_CHECKING
namespace {

[[noreturn]] void reportMisuse(const PokerCommandI& command, std::uint32_t marker, const char* operation) {
  // Of a dead object nothing is safe to ask, not even its class.
  const std::string name =
      marker == PokerCommandI::kIdleMarker ? readableTypeName(typeid(command)) : "an object that is no living command";
  std::fprintf(stderr, "CommandProcessor: %s: %s%s\n", name.c_str(), operation,
               marker == PokerCommandI::kIdleMarker ? " after its release" : "");
  std::fflush(stderr);
  std::abort();
}

}  // namespace

void PokerCommandI::requireInUse(const char* operation) const {
  if (marker() != kValidMarker) reportMisuse(*this, marker(), operation);
}

void PokerCommandI::enterPool([[maybe_unused]] std::size_t size) {
  const std::uint32_t before = std::atomic_ref(marker_).exchange(kIdleMarker);
  if (before != kValidMarker) reportMisuse(*this, before, "release()");
#ifdef CP_POISONING
  // This class's own part stays open: what kind of object it is and that it is idle can be told. Idle objects keep their
  // memory, so the leak checker has to look into what is closed: LSAN_OPTIONS=use_poisoned=1.
  ASAN_POISON_MEMORY_REGION(this + 1, size - sizeof(PokerCommandI));
#endif
}

void PokerCommandI::leavePool([[maybe_unused]] std::size_t size) {
#ifdef CP_POISONING
  ASAN_UNPOISON_MEMORY_REGION(this + 1, size - sizeof(PokerCommandI));
#endif
  std::atomic_ref(marker_).store(kValidMarker);
}
#endif

}  // namespace poker
