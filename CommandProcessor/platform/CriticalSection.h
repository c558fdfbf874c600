#pragma once

#include <CommandProcessor/platform/Export.h>
#include <CommandProcessor/platform/SchedulerHooks.h>

#include <atomic>
#include <cstdint>

#ifndef _WIN32
#include <pthread.h>
#endif

namespace poker {

/// Recursive mutual exclusion: the thread that holds the section may enter it again and leaves it as often as it
/// entered. Works with std::lock_guard, std::unique_lock and std::scoped_lock.
///
/// The constructor is constexpr, so a static section is usable from every static constructor. Elsewhere than on Windows
/// the destructor is trivial and such a section is usable until the process ends; on Windows it frees what the system
/// attached to the section, and a section that is entered after that starts anew.
///
/// Not fair: a thread that arrives may overtake one that waits. unlock() may be called by the holder alone.
class COMMANDPROCESSOR_API CriticalSection {
 public:
  constexpr CriticalSection() noexcept = default;
  CriticalSection(const CriticalSection&) = delete;
  CriticalSection& operator=(const CriticalSection&) = delete;

#ifdef _WIN32
  ~CriticalSection();

  void lock() noexcept;
  bool try_lock() noexcept;
  void unlock() noexcept;

 private:
  // The system's INIT_ONCE and CRITICAL_SECTION; both start as zero bytes.
  alignas(void*) unsigned char once_[sizeof(void*)]{};
  alignas(void*) unsigned char section_[sizeof(void*) == 8 ? 40 : 24]{};
#else
  ~CriticalSection() = default;

  void lock() noexcept {
    scheduling::step();
    const pthread_t self = scheduling::self();
    std::uint32_t expected = kFree;
    if (state_.compare_exchange_strong(expected, kHeld, std::memory_order_acquire, std::memory_order_relaxed)) {
      owner_.store(self, std::memory_order_relaxed);
    } else {
      lockHeld(self);
    }
  }

  /// True when the section was free or the caller holds it already; unlock() must follow then.
  bool try_lock() noexcept {
    scheduling::step();
    const pthread_t self = scheduling::self();
    std::uint32_t expected = kFree;
    if (state_.compare_exchange_strong(expected, kHeld, std::memory_order_acquire, std::memory_order_relaxed)) {
      owner_.store(self, std::memory_order_relaxed);
      return true;
    }
    if (owner_.load(std::memory_order_relaxed) != self) return false;
    ++reentries_;
    return true;
  }

  void unlock() noexcept {
    if (reentries_ != 0) {
      --reentries_;
      return;
    }
    scheduling::step();
    owner_.store(pthread_t{}, std::memory_order_relaxed);
    // From here on the section may already be somebody else's, or gone: only its address is used.
    if (state_.exchange(kFree, std::memory_order_release) == kWaited) wakeOne(state_);
  }

 private:
  static constexpr std::uint32_t kFree = 0;
  static constexpr std::uint32_t kHeld = 1;
  static constexpr std::uint32_t kWaited = 2;  ///< held, and a thread may sleep until it is free

  void lockHeld(pthread_t self) noexcept;
  static void wakeOne(std::atomic<std::uint32_t>& state) noexcept;

  /// Only the holder stores its own id, and takes it away before it leaves: a thread that reads its own id holds the
  /// section, whatever else happens meanwhile.
  std::atomic<pthread_t> owner_{};
  std::atomic<std::uint32_t> state_{kFree};
  std::uint32_t reentries_ = 0;  ///< touched by the holder alone
#endif
};

}  // namespace poker
