#pragma once

// What holds whenever bytes from the wire are read.

#include <CommandProcessor/wire/StringList.h>
#include <fuzz/support/Target.h>
#include <tests/support/AllocationCounter.h>
#include <tests/support/WireBytes.h>

namespace poker::fuzz {

/// The texts that reading can fail with.
inline bool isReadMessage(std::string_view message) {
  return test::isReadMessage(message) || message == StringList::kTooManyElements;
}

/// While it lives, no more memory may be alive than reading a frame of that size needs.
class MemoryBound {
 public:
  explicit MemoryBound(std::size_t frame) : most_(test::decodeBudget(frame)) {}
  ~MemoryBound() { require(memory_.peak() <= most_, "memory stays in proportion to the frame"); }
  MemoryBound(const MemoryBound&) = delete;
  MemoryBound& operator=(const MemoryBound&) = delete;

 private:
  std::size_t most_;
  test::AllocationCounter memory_;
};

}  // namespace poker::fuzz
