#pragma once

#include <cstddef>

namespace poker::test {

/// What `operator new` has handed to this thread since the counter was made. (The writer's array comes from malloc and
/// is not seen: look at its data() and capacity().)
class AllocationCounter {
 public:
  AllocationCounter();
  /// Calls.
  std::size_t calls() const;
  /// The most bytes that were alive at once, beyond those alive at the start.
  std::size_t peak() const;
  /// The bytes that are alive beyond those alive at the start; below 0 when some of those are gone.
  std::ptrdiff_t alive() const;

 private:
  std::size_t callsBefore_;
  std::ptrdiff_t aliveBefore_;
};

/// While it lives, `operator new` gives this thread so many blocks and then fails. Does nothing under the thread sanitizer.
class FailingAllocations {
 public:
  explicit FailingAllocations(std::size_t allowed);
  ~FailingAllocations();
  /// Whether one has failed.
  bool struck() const;
};

}  // namespace poker::test
