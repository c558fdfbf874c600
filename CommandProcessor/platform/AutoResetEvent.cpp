#include <CommandProcessor/platform/AutoResetEvent.h>

#include <algorithm>
#include <system_error>

#ifdef _WIN32
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace poker {

AutoResetEvent::AutoResetEvent() : native_(CreateEventA(nullptr, FALSE, FALSE, nullptr)) {
  if (native_ == nullptr) {
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), "CreateEventA");
  }
}

AutoResetEvent::~AutoResetEvent() { CloseHandle(native_); }

void AutoResetEvent::set() noexcept { SetEvent(native_); }

bool AutoResetEvent::tryWait() noexcept { return WaitForSingleObject(native_, 0) == WAIT_OBJECT_0; }

void AutoResetEvent::wait() noexcept { WaitForSingleObject(native_, INFINITE); }

bool AutoResetEvent::waitFor(std::chrono::milliseconds timeout) noexcept {
  using std::chrono::milliseconds;
  const auto start = std::chrono::steady_clock::now();
  milliseconds left = std::max(timeout, milliseconds{0});
  for (;;) {
    const auto slice = std::min<milliseconds::rep>(left.count(), INFINITE - 1);
    if (WaitForSingleObject(native_, static_cast<DWORD>(slice)) == WAIT_OBJECT_0) return true;
    const auto elapsed = std::chrono::floor<milliseconds>(std::chrono::steady_clock::now() - start);
    if (elapsed >= timeout) return false;
    left = timeout - elapsed;
  }
}

void AutoResetEvent::acknowledge() noexcept { tryWait(); }

}  // namespace poker

#else

#include <CommandProcessor/platform/SchedulerHooks.h>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <limits>

namespace poker {
namespace {

void waitReadable(const AutoResetEvent& event, int milliseconds) noexcept {
  pollfd entry{event.native(), POLLIN, 0};
  // An interruption counts as an early return: the callers look again.
  const int ready = poll(&entry, 1, scheduling::active() ? 0 : milliseconds);
  if (scheduling::active() && ready == 0) scheduling::sleep(&event);
}

}  // namespace

AutoResetEvent::AutoResetEvent() : native_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
  if (native_ < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
}

AutoResetEvent::~AutoResetEvent() { close(native_); }

void AutoResetEvent::set() noexcept {
  scheduling::step();
  if (signalled_.exchange(true, std::memory_order_acq_rel)) return;
  scheduling::step();
  const std::uint64_t one = 1;
  while (write(native_, &one, sizeof one) < 0 && errno == EINTR) {
  }
  scheduling::wake(this, true);
}

// First the descriptor, then the flag. A set() in between finds the flag up and does nothing, and that is right: the
// caller drains only afterwards, and reading the flag has made everything visible that preceded that set(). In the
// other order such a set() would be swallowed: its write is read here, its flag stays up, and no later set() writes.
bool AutoResetEvent::take() noexcept {
  scheduling::step();
  std::uint64_t count = 0;
  ssize_t got = 0;
  do {
    got = read(native_, &count, sizeof count);
  } while (got < 0 && errno == EINTR);
  if (got != static_cast<ssize_t>(sizeof count)) return false;
  scheduling::step();
  signalled_.exchange(false, std::memory_order_acq_rel);
  return true;
}

bool AutoResetEvent::tryWait() noexcept { return signalled_.load(std::memory_order_relaxed) && take(); }

void AutoResetEvent::wait() noexcept {
  if (tryWait()) return;
  do {
    waitReadable(*this, -1);
  } while (!take());
}

bool AutoResetEvent::waitFor(std::chrono::milliseconds timeout) noexcept {
  using std::chrono::milliseconds;
  if (tryWait()) return true;
  const auto start = std::chrono::steady_clock::now();
  // Rounding the elapsed time down never ends a wait early, and no sum of clock and timeout can overflow.
  for (milliseconds elapsed{0}; elapsed < timeout;
       elapsed = std::chrono::floor<milliseconds>(std::chrono::steady_clock::now() - start)) {
    constexpr milliseconds::rep kLongest = std::numeric_limits<int>::max();
    waitReadable(*this, static_cast<int>(std::min((timeout - elapsed).count(), kLongest)));
    if (take()) return true;
  }
  return false;
}

void AutoResetEvent::acknowledge() noexcept { take(); }

}  // namespace poker

#endif
