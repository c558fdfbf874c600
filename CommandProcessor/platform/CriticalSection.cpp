#include <CommandProcessor/platform/CriticalSection.h>

#ifdef _WIN32
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <new>

namespace poker {
namespace {

INIT_ONCE* onceIn(unsigned char* bytes) noexcept { return std::launder(reinterpret_cast<INIT_ONCE*>(bytes)); }

CRITICAL_SECTION* sectionIn(unsigned char* bytes) noexcept {
  return std::launder(reinterpret_cast<CRITICAL_SECTION*>(bytes));
}

BOOL CALLBACK initialise(INIT_ONCE*, void* section, void**) {
  InitializeCriticalSection(static_cast<CRITICAL_SECTION*>(section));
  return TRUE;
}

CRITICAL_SECTION* ready(unsigned char* once, unsigned char* section) noexcept {
  CRITICAL_SECTION* const result = sectionIn(section);
  InitOnceExecuteOnce(onceIn(once), initialise, result, nullptr);
  return result;
}

}  // namespace

CriticalSection::~CriticalSection() {
  static_assert(sizeof(section_) == sizeof(CRITICAL_SECTION) && alignof(CRITICAL_SECTION) <= alignof(void*));
  static_assert(sizeof(once_) == sizeof(INIT_ONCE) && alignof(INIT_ONCE) <= alignof(void*));
  BOOL pending = FALSE;
  if (InitOnceBeginInitialize(onceIn(once_), INIT_ONCE_CHECK_ONLY, &pending, nullptr) && !pending) {
    DeleteCriticalSection(sectionIn(section_));
    InitOnceInitialize(onceIn(once_));
  }
}

void CriticalSection::lock() noexcept { EnterCriticalSection(ready(once_, section_)); }

bool CriticalSection::try_lock() noexcept { return TryEnterCriticalSection(ready(once_, section_)) != FALSE; }

void CriticalSection::unlock() noexcept { LeaveCriticalSection(sectionIn(section_)); }

}  // namespace poker

#else

namespace poker {
namespace {

/// About a microsecond: longer than a push or a pop holds a section, shorter than a sleep and a wake-up.
constexpr int kSpins = 50;

void relax() noexcept {
#if defined(__x86_64__) || defined(__i386__)
  __builtin_ia32_pause();
#elif defined(__aarch64__)
  asm volatile("yield");
#endif
}

}  // namespace

void CriticalSection::lockHeld(pthread_t self) noexcept {
  if (owner_.load(std::memory_order_relaxed) == self) {
    ++reentries_;
    return;
  }
  const int spins = scheduling::active() ? 1 : kSpins;
  for (int spin = 0; spin < spins; ++spin) {
    std::uint32_t state = state_.load(std::memory_order_relaxed);
    if (state == kFree &&
        state_.compare_exchange_weak(state, kHeld, std::memory_order_acquire, std::memory_order_relaxed)) {
      owner_.store(self, std::memory_order_relaxed);
      return;
    }
    if (state == kWaited) break;  // others sleep already: spinning past them helps nobody
    scheduling::step();
    relax();
  }
  // Whoever slept takes the section as kWaited, because it cannot know whether others still sleep.
  while (state_.exchange(kWaited, std::memory_order_acquire) != kFree) {
    scheduling::step();
    if (!scheduling::active()) {
      state_.wait(kWaited, std::memory_order_relaxed);
    } else if (state_.load(std::memory_order_relaxed) == kWaited) {
      scheduling::sleep(&state_);
    }
  }
  owner_.store(self, std::memory_order_relaxed);
}

void CriticalSection::wakeOne(std::atomic<std::uint32_t>& state) noexcept {
  scheduling::step();
  state.notify_one();
  scheduling::wake(&state, false);
}

}  // namespace poker

#endif
