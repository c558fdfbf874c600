#pragma once

#include <CommandProcessor/platform/Export.h>

#include <atomic>
#include <chrono>

namespace poker {

/// An event that stays signalled until one waiter takes it. However often it was set meanwhile, one waiter wakes once:
/// who wakes must drain what the event announces. Not signalled at first. All operations may be called by any thread.
///
/// What a thread did before set() is seen by the waiter that set() woke, also when set() found the event signalled.
class COMMANDPROCESSOR_API AutoResetEvent {
 public:
#ifdef _WIN32
  using Native = void*;  ///< a HANDLE
#else
  using Native = int;  ///< a file descriptor
#endif

  /// Throws std::system_error when the system has no event to give.
  AutoResetEvent();
  ~AutoResetEvent();
  AutoResetEvent(const AutoResetEvent&) = delete;
  AutoResetEvent& operator=(const AutoResetEvent&) = delete;

  /// Costs no system call while the event is signalled already (elsewhere than on Windows).
  void set() noexcept;

  /// Takes the signal if there is one.
  bool tryWait() noexcept;

  void wait() noexcept;

  /// False when nothing was signalled within `timeout`; zero and less do not wait at all.
  bool waitFor(std::chrono::milliseconds timeout) noexcept;

  /// For a host that waits for native() by its own means (epoll): takes the signal, so that the next set() makes
  /// native() ready again. Call it *before* draining what the event announces, and never read native() directly.
  void acknowledge() noexcept;

  /// Ready to read while the event is signalled. Elsewhere than on Windows a non-blocking eventfd that is closed on
  /// exec.
  Native native() const noexcept { return native_; }

 private:
#ifndef _WIN32
  bool take() noexcept;

  /// True from the set() that makes native_ readable until the waiter that read it; whoever turns it true writes.
  std::atomic<bool> signalled_{false};
#endif
  Native native_;
};

}  // namespace poker
