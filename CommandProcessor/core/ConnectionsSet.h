#pragma once

#include <CommandProcessor/platform/Export.h>
#include <CommandProcessor/types/TypeWrapper.h>

#include <cstddef>

namespace poker {

/// The ordered set of connection ids that a command is addressed to, or came from: ascending, no duplicates.
///
/// A few ids (one request, one table of ten) stand inside the object; more are kept on the heap, whose memory stays
/// with the set when it is cleared, so that a pooled command allocates for its largest audience once.
class COMMANDPROCESSOR_API ConnectionsSet {
 public:
  using value_type = ConnectionID;
  using const_iterator = const ConnectionID*;
  using iterator = const_iterator;

  ConnectionsSet() noexcept = default;
  ConnectionsSet(const ConnectionsSet& other) { insert(other); }
  ConnectionsSet& operator=(const ConnectionsSet& other);
  ~ConnectionsSet() {
    if (ids_ != inside_) delete[] ids_;
  }

  const_iterator begin() const { return ids_; }
  const_iterator end() const { return ids_ + size_; }
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  bool contains(const ConnectionID& id) const;
  std::size_t capacity() const { return capacity_; }

  void clear() { size_ = 0; }
  /// @return whether the id is new
  bool insert(const ConnectionID& id);
  void insert(const ConnectionsSet& other);
  /// @return whether the id was there
  bool erase(const ConnectionID& id);

  friend bool operator==(const ConnectionsSet& a, const ConnectionsSet& b) {
    if (a.size_ != b.size_) return false;
    for (std::uint32_t i = 0; i < a.size_; ++i) {
      if (a.ids_[i] != b.ids_[i]) return false;
    }
    return true;
  }

 private:
  static constexpr std::uint32_t kInside = 10;

  ConnectionID* lowerBound(const ConnectionID& id) const;
  void reserve(std::size_t capacity);

  ConnectionID* ids_ = inside_;
  std::uint32_t size_ = 0;
  std::uint32_t capacity_ = kInside;
  ConnectionID inside_[kInside];
};

}  // namespace poker
