#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace poker::test {

/// What `operator new` has handed to this thread since the counter was made. (The writer's array comes from malloc and
/// is not seen: look at its data() and capacity().)
class AllocationCounter {
 public:
  AllocationCounter();
  /// Whether anything is counted: not under the thread sanitizer.
  static bool counts();
  /// Calls.
  std::size_t calls() const;
  /// The most bytes that were alive at once, beyond those alive at the start.
  std::size_t peak() const;
  /// Bytes that were handed out since the start and not given back, less those of before that were.
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

/// While it lives, looks for bytes in every block that this thread takes from `operator new`: when the block is given back,
/// and when asked. Blocks taken earlier are not seen. One at a time; does nothing under the thread sanitizer.
class BlockWatch {
 public:
  /// @param needle  outlives the watch and stands in no such block
  explicit BlockWatch(std::span<const std::uint8_t> needle);
  BlockWatch(const BlockWatch&) = delete;
  BlockWatch& operator=(const BlockWatch&) = delete;
  ~BlockWatch();
  /// Blocks that held the bytes when they were given back.
  std::size_t found() const;
  /// Blocks that hold them now.
  std::size_t holding() const;
};

}  // namespace poker::test
