#include <CommandProcessor/platform/SchedulerHooks.h>

#if defined(CP_CHECKING) && !defined(_WIN32)

namespace poker {
namespace {
thread_local constinit SchedulerHooks* currentHooks = nullptr;
}

SchedulerHooks* SchedulerHooks::current() noexcept { return currentHooks; }

void SchedulerHooks::attach(SchedulerHooks* hooks) noexcept { currentHooks = hooks; }

}  // namespace poker

#endif
