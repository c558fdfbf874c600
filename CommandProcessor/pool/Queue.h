#pragma once

#include <CommandProcessor/platform/AutoResetEvent.h>
#include <CommandProcessor/platform/CriticalSection.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <mutex>
#include <new>
#include <utility>

namespace poker {

template <class T>
class Queue;

/// A first-in, first-out queue of pointers that any thread may use at any time, with an event for consumers on request.
///
/// The items stand in one ring that grows by doubling and never shrinks, so a queue in steady use allocates nothing.
/// The lock is recursive: an item's destructor, called by tsClear(), may push to the queue that is being cleared.
template <class T>
class Queue<T*> {
 public:
  /// @param withEvent  whether pushes set an auto-reset event that a consumer can wait for
  /// @throws std::system_error  when the system has no event left
  explicit Queue(bool withEvent) : event_(withEvent ? new AutoResetEvent : nullptr) {}
  /// Copies the items (pointers), taken under the other queue's lock. The copy has a lock of its own and, when the
  /// other one has an event, an event of its own, set if there is something to get.
  Queue(const Queue& other) { *this = other; }
  Queue& operator=(const Queue& other);
  /// Does not delete the objects that are still queued.
  ~Queue() = default;

  /// Appends at the back and sets the event.
  /// @throws std::bad_alloc  when the ring cannot grow; the queue is unchanged
  void tsPush(T* const& item) {
    const std::lock_guard guard(lock_);
    push(item);
    if (event_) event_->set();
  }
  /// Takes the front item; null at once when there is none. Never waits and leaves the event alone: one wake-up may
  /// stand for several items, so a consumer gets until it gets null.
  T* tsGet() {
    const std::lock_guard guard(lock_);
    return tsGetImpl();
  }
  /// A look without the lock: the answer may be stale when it arrives.
  bool tsEmpty() const { return size_.load(std::memory_order_relaxed) == 0; }
  std::uint32_t tsSize() const {
    const std::lock_guard guard(lock_);
    return size_.load(std::memory_order_relaxed);
  }
  /// Deletes every queued object.
  void tsClear() { deleteContent(); }
  void deleteContent() {
    const std::lock_guard guard(lock_);
    while (!tsEmpty()) delete tsGetImpl();
  }
  /// The event to wait for, or null when the queue was built without one.
  AutoResetEvent* getInEvent() {
    const std::lock_guard guard(lock_);
    return event_.get();
  }
  /// Does nothing.
  void releaseHandle() {}

 protected:
  /// Without an event; ready at compile time.
  constexpr Queue() noexcept = default;

  /// As tsGet(), for callers that hold the lock.
  T* tsGetImpl() {
    const std::uint32_t size = size_.load(std::memory_order_relaxed);
    if (size == 0) return nullptr;
    T* item = ring_[head_];
    head_ = (head_ + 1) & (capacity_ - 1);
    size_.store(size - 1, std::memory_order_relaxed);
    return item;
  }
  /// Makes room for `size` items in all, so that pushes up to there cannot fail. For callers that hold the lock.
  void reserve(std::uint32_t size) {
    if (size > capacity_) growTo(size);
  }
  CriticalSection& lock() const { return lock_; }

 private:
  static constexpr std::uint32_t kFirstCapacity = 16;

  COMMANDPROCESSOR_COLD void growTo(std::uint32_t size) {
    std::uint32_t capacity = capacity_ == 0 ? kFirstCapacity : capacity_;
    while (capacity < size) {
      if (capacity > std::numeric_limits<std::uint32_t>::max() / 2) throw std::bad_alloc();
      capacity *= 2;
    }
    auto ring = std::make_unique<T*[]>(capacity);
    copyItems(ring.get());
    ring_ = std::move(ring);
    capacity_ = capacity;
    head_ = 0;
  }
  void push(T* item) {
    const std::uint32_t size = size_.load(std::memory_order_relaxed);
    if (size == capacity_) growTo(size + 1);
    ring_[(head_ + size) & (capacity_ - 1)] = item;
    size_.store(size + 1, std::memory_order_relaxed);
  }
  void copyItems(T** to) const {
    const std::uint32_t size = size_.load(std::memory_order_relaxed);
    for (std::uint32_t i = 0; i < size; ++i) to[i] = ring_[(head_ + i) & (capacity_ - 1)];
  }

  mutable CriticalSection lock_;
  std::unique_ptr<AutoResetEvent> event_;
  std::unique_ptr<T*[]> ring_;
  std::uint32_t capacity_ = 0;  // a power of two
  std::uint32_t head_ = 0;
  std::atomic<std::uint32_t> size_ = 0;  // read without the lock by tsEmpty() alone
};

template <class T>
Queue<T*>& Queue<T*>::operator=(const Queue& other) {
  if (this == &other) return *this;
  // Both locks in one order, whichever way round the queues stand: A = B beside B = A must not lock each other out.
  const bool mineFirst = std::less<const Queue*>()(this, &other);
  const std::lock_guard first(mineFirst ? lock_ : other.lock_);
  const std::lock_guard second(mineFirst ? other.lock_ : lock_);
  if (other.event_ && !event_) event_ = std::make_unique<AutoResetEvent>();
  const std::uint32_t size = other.size_.load(std::memory_order_relaxed);
  reserve(size);
  head_ = 0;
  other.copyItems(ring_.get());
  size_.store(size, std::memory_order_relaxed);
  if (event_ && size != 0) event_->set();
  return *this;
}

}  // namespace poker
