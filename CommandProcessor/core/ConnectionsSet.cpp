#include <CommandProcessor/core/ConnectionsSet.h>

#include <algorithm>
#include <new>

namespace poker {

ConnectionsSet& ConnectionsSet::operator=(const ConnectionsSet& other) {
  if (this == &other) return *this;
  clear();
  insert(other);
  return *this;
}

bool ConnectionsSet::contains(const ConnectionID& id) const {
  const ConnectionID* place = lowerBound(id);
  return place != end() && *place == id;
}

bool ConnectionsSet::insert(const ConnectionID& id) {
  const auto place = static_cast<std::uint32_t>(lowerBound(id) - ids_);
  if (place != size_ && ids_[place] == id) return false;
  if (size_ == capacity_) reserve(std::size_t{capacity_} * 2);
  std::copy_backward(ids_ + place, ids_ + size_, ids_ + size_ + 1);
  ids_[place] = id;
  ++size_;
  return true;
}

void ConnectionsSet::insert(const ConnectionsSet& other) {
  if (size_ == 0) {
    reserve(other.size_);
    std::copy(other.begin(), other.end(), ids_);
    size_ = other.size_;
    return;
  }
  if (this == &other) return;
  for (const ConnectionID& id : other) insert(id);
}

bool ConnectionsSet::erase(const ConnectionID& id) {
  ConnectionID* place = lowerBound(id);
  if (place == end() || *place != id) return false;
  std::copy(place + 1, ids_ + size_, place);
  --size_;
  return true;
}

ConnectionID* ConnectionsSet::lowerBound(const ConnectionID& id) const {
  // Ids mostly arrive in order: look at the end first.
  if (size_ != 0 && ids_[size_ - 1] < id) return ids_ + size_;
  return std::lower_bound(ids_, ids_ + size_, id);
}

void ConnectionsSet::reserve(std::size_t capacity) {
  if (capacity <= capacity_) return;
  auto* grown = new ConnectionID[capacity];
  std::copy(ids_, ids_ + size_, grown);
  if (ids_ != inside_) delete[] ids_;
  ids_ = grown;
  capacity_ = static_cast<std::uint32_t>(capacity);
}

}  // namespace poker
