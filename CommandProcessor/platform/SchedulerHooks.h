#pragma once

#include <CommandProcessor/platform/Export.h>

#ifndef _WIN32
#include <pthread.h>

namespace poker {

#ifdef CP_CHECKING
/// A scheduler of a test that decides, at each step of a lock or an event, which of its threads goes on: of those that
/// it serves only one runs at a time, and none ever sleeps in the system. In checking builds alone (CP_CHECKING).
///
/// Between two calls of it a thread is alone, so a look at a value and the sleep() after it cannot be torn apart.
class COMMANDPROCESSOR_API SchedulerHooks {
 public:
  /// Who calls: what pthread_self() is to the system's threads.
  virtual pthread_t self() noexcept = 0;
  /// Another thread may go first here.
  virtual void step() noexcept = 0;
  /// Returns after a wake() for that address.
  virtual void sleep(const void* address) noexcept = 0;
  /// Lets those go on that sleep at that address: one of them, or all.
  virtual void wake(const void* address, bool all) noexcept = 0;

  /// The scheduler of the calling thread; null: the system's.
  static SchedulerHooks* current() noexcept;
  /// Sets it, or takes it away with null.
  static void attach(SchedulerHooks* hooks) noexcept;

 protected:
  ~SchedulerHooks() = default;
};
#endif

// What locks and events call. Outside of checking builds nothing is left of it.
namespace scheduling {
#ifdef CP_CHECKING
inline bool active() noexcept { return SchedulerHooks::current() != nullptr; }
inline pthread_t self() noexcept {
  SchedulerHooks* const hooks = SchedulerHooks::current();
  return hooks != nullptr ? hooks->self() : pthread_self();
}
inline void step() noexcept {
  if (SchedulerHooks* const hooks = SchedulerHooks::current()) hooks->step();
}
inline void sleep(const void* address) noexcept { SchedulerHooks::current()->sleep(address); }
inline void wake(const void* address, bool all) noexcept {
  if (SchedulerHooks* const hooks = SchedulerHooks::current()) hooks->wake(address, all);
}
#else
constexpr bool active() noexcept { return false; }
inline pthread_t self() noexcept { return pthread_self(); }
inline void step() noexcept {}
inline void sleep(const void*) noexcept {}
inline void wake(const void*, bool) noexcept {}
#endif
}  // namespace scheduling

}  // namespace poker

#endif
