#include <tests/support/AllocationCounter.h>

#include <malloc.h>
#ifdef _WIN32  // where a DLL, ours too, calls the operator new that it was linked with, never the program's
#define malloc_usable_size _msize
#define CP_UNCOUNTED
#endif

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

struct Allocations {
  std::size_t calls;
  std::ptrdiff_t alive;
  std::ptrdiff_t peak;
  bool limited;
  std::size_t allowed;
  bool struck;

  bool watching;
  std::span<const std::uint8_t> needle;
  std::size_t found;
  void** blocks;  // from malloc
  std::size_t blockCount;
  std::size_t blockRoom;
};
thread_local constinit Allocations allocations{};

// Idle objects are closed to everybody else under the address sanitizer: so this looks byte by byte, and calls nothing.
#ifdef __clang__
__attribute__((no_sanitize("address")))
#endif
bool holdsNeedle(void* block) {
  const auto* bytes = static_cast<const std::uint8_t*>(block);
  const std::uint8_t* const needle = allocations.needle.data();
  const std::size_t length = allocations.needle.size();
  const std::size_t size = malloc_usable_size(block);
  for (std::size_t at = 0; at + length <= size; ++at) {
    std::size_t same = 0;
    while (same < length && bytes[at + same] == needle[same]) ++same;
    if (same == length) return true;
  }
  return false;
}

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
  if (allocations.watching) {
    std::memset(memory, 0xA5, malloc_usable_size(memory));  // what an earlier block left there
    if (allocations.blockCount == allocations.blockRoom) {
      allocations.blockRoom = std::max<std::size_t>(1024, 2 * allocations.blockRoom);
      auto* blocks = static_cast<void**>(std::realloc(allocations.blocks, allocations.blockRoom * sizeof(void*)));
      if (blocks == nullptr) std::abort();
      allocations.blocks = blocks;
    }
    allocations.blocks[allocations.blockCount++] = memory;
  }
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
  if (allocations.watching) {
    void** const end = allocations.blocks + allocations.blockCount;
    void** const place = std::find(allocations.blocks, end, memory);
    if (place != end) {
      if (holdsNeedle(memory)) ++allocations.found;
      *place = end[-1];
      --allocations.blockCount;
    }
  }
  allocations.alive -= static_cast<std::ptrdiff_t>(malloc_usable_size(memory));
  std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { operator delete(memory); }
#endif

namespace poker::test {

#ifdef CP_UNCOUNTED
bool AllocationCounter::counts() { return false; }
#else
bool AllocationCounter::counts() { return true; }
#endif

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

std::ptrdiff_t AllocationCounter::alive() const { return allocations.alive - aliveBefore_; }

BlockWatch::BlockWatch(std::span<const std::uint8_t> needle) {
  allocations.needle = needle;
  allocations.found = 0;
  allocations.watching = true;
}

BlockWatch::~BlockWatch() {
  allocations.watching = false;
  std::free(allocations.blocks);
  allocations.blocks = nullptr;
  allocations.blockCount = allocations.blockRoom = 0;
}

std::size_t BlockWatch::found() const { return allocations.found; }

std::size_t BlockWatch::holding() const {
  return static_cast<std::size_t>(
      std::count_if(allocations.blocks, allocations.blocks + allocations.blockCount, holdsNeedle));
}

}  // namespace poker::test
