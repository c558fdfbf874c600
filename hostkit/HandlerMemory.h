#pragma once

#include <array>
#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

namespace poker::detail {

/// A few blocks of memory for the operations that one session has under way with the event loop (a read, a write, its
/// timer), so that starting one allocates nothing. What does not fit comes from the heap. One thread.
class HandlerMemory {
 public:
  HandlerMemory() = default;
  HandlerMemory(const HandlerMemory&) = delete;
  HandlerMemory& operator=(const HandlerMemory&) = delete;

  void* allocate(std::size_t size) {
    if (size <= kBlockSize) {
      for (std::size_t i = 0; i < kBlocks; ++i) {
        if (used_[i]) continue;
        used_[i] = true;
        return blocks_[i].bytes;
      }
    }
    return ::operator new(size);
  }
  void deallocate(void* memory) noexcept {
    for (std::size_t i = 0; i < kBlocks; ++i) {
      if (memory != blocks_[i].bytes) continue;
      used_[i] = false;
      return;
    }
    ::operator delete(memory);
  }

 private:
  static constexpr std::size_t kBlocks = 5;
  static constexpr std::size_t kBlockSize = 256;

  struct Block {
    alignas(std::max_align_t) std::byte bytes[kBlockSize];
  };

  std::array<Block, kBlocks> blocks_;
  std::array<bool, kBlocks> used_{};
};

template <class T>
class HandlerAllocator {
 public:
  using value_type = T;

  explicit HandlerAllocator(HandlerMemory& memory) noexcept : memory_(&memory) {}
  template <class U>
  HandlerAllocator(const HandlerAllocator<U>& other) noexcept : memory_(other.memory_) {}

  T* allocate(std::size_t count) { return static_cast<T*>(memory_->allocate(sizeof(T) * count)); }
  void deallocate(T* memory, std::size_t) noexcept { memory_->deallocate(memory); }

  template <class U>
  bool operator==(const HandlerAllocator<U>& other) const noexcept {
    return memory_ == other.memory_;
  }

 private:
  template <class U>
  friend class HandlerAllocator;

  HandlerMemory* memory_;
};

/// A completion handler whose operation takes its memory from a HandlerMemory. The handler keeps the memory's owner
/// alive.
template <class F>
struct HandlerIn {
  using allocator_type = HandlerAllocator<void>;

  allocator_type get_allocator() const noexcept { return allocator_type(*memory); }
  template <class... Args>
  void operator()(Args&&... args) {
    handler(std::forward<Args>(args)...);
  }

  HandlerMemory* memory;
  F handler;
};

template <class F>
HandlerIn<std::decay_t<F>> handlerIn(HandlerMemory& memory, F&& handler) {
  return {&memory, std::forward<F>(handler)};
}

}  // namespace poker::detail
