#include <tests/support/AllocationCounter.h>

#include <malloc.h>
#ifdef _WIN32  // where a DLL, ours too, calls the operator new that it was linked with, never the program's
#define malloc_usable_size _msize
#define CP_UNCOUNTED
#endif

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

struct Allocations {
  std::size_t calls;
  std::ptrdiff_t alive;
  std::ptrdiff_t peak;
  bool limited;
  std::size_t allowed;
  bool struck;
};
thread_local constinit Allocations allocations{};

}  // namespace

// The thread sanitizer brings an operator new of its own, and its runtime cannot be linked beside another: there the
// counter stands still, and nothing that is bounded by it can fail.
#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define CP_UNCOUNTED
#endif
#endif
#if defined(__SANITIZE_THREAD__)
#define CP_UNCOUNTED
#endif

#ifndef CP_UNCOUNTED
void* operator new(std::size_t size) {
  if (allocations.limited && allocations.allowed-- == 0) {
    allocations.limited = false;  // the next one succeeds: what is being unwound may need it
    allocations.struck = true;
    throw std::bad_alloc();
  }
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  ++allocations.calls;
  allocations.alive += static_cast<std::ptrdiff_t>(malloc_usable_size(memory));
  allocations.peak = std::max(allocations.peak, allocations.alive);
  return memory;
}

// The address sanitizer has one of its own, which our operator delete would not fit.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void operator delete(void* memory) noexcept {
  if (memory == nullptr) return;
  allocations.alive -= static_cast<std::ptrdiff_t>(malloc_usable_size(memory));
  std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { operator delete(memory); }
#endif

namespace poker::test {

AllocationCounter::AllocationCounter() : callsBefore_(allocations.calls), aliveBefore_(allocations.alive) {
  allocations.peak = allocations.alive;
}

FailingAllocations::FailingAllocations(std::size_t allowed) {
  allocations.limited = true;
  allocations.allowed = allowed;
  allocations.struck = false;
}

FailingAllocations::~FailingAllocations() { allocations.limited = false; }

bool FailingAllocations::struck() const { return allocations.struck; }

std::size_t AllocationCounter::calls() const { return allocations.calls - callsBefore_; }

std::size_t AllocationCounter::peak() const { return static_cast<std::size_t>(allocations.peak - aliveBefore_); }

}  // namespace poker::test
