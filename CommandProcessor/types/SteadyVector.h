#pragma once

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <utility>
#include <vector>

namespace poker {

/// A vector whose elements keep their own memory when they are removed, for those that are added next: a pooled command
/// that is filled again and again allocates nothing.
template <class T>
class SteadyVector {
 public:
  using value_type = T;
  using iterator = typename std::vector<T>::iterator;
  using const_iterator = typename std::vector<T>::const_iterator;

  SteadyVector() = default;
  SteadyVector(std::initializer_list<T> items) : items_(items), size_(items.size()) {}
  SteadyVector(const SteadyVector& other) : items_(other.begin(), other.end()), size_(other.size_) {}
  SteadyVector& operator=(const SteadyVector& other) {
    if (this == &other) return *this;
    if (items_.size() < other.size_) items_.resize(other.size_);
    std::copy(other.begin(), other.end(), items_.begin());
    size_ = other.size_;
    return *this;
  }
  SteadyVector(SteadyVector&& other) noexcept : items_(std::move(other.items_)), size_(std::exchange(other.size_, 0)) {
    other.items_.clear();
  }
  SteadyVector& operator=(SteadyVector&& other) noexcept {
    items_.swap(other.items_);
    std::swap(size_, other.size_);
    return *this;
  }
  ~SteadyVector() = default;

  iterator begin() { return items_.begin(); }
  iterator end() { return items_.begin() + static_cast<std::ptrdiff_t>(size_); }
  const_iterator begin() const { return items_.begin(); }
  const_iterator end() const { return items_.begin() + static_cast<std::ptrdiff_t>(size_); }
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  T& operator[](std::size_t i) { return items_[i]; }
  const T& operator[](std::size_t i) const { return items_[i]; }

  void clear() { size_ = 0; }
  void reserve(std::size_t size) { items_.reserve(size); }
  /// Adds an empty element.
  T& emplace_back() {
    if (size_ == items_.size()) {
      items_.emplace_back();
    } else {
      const T empty{};  // copied, not moved: the element keeps its memory
      items_[size_] = empty;
    }
    return items_[size_++];
  }
  void push_back(const T& item) {
    if (size_ == items_.size()) {
      items_.push_back(item);
    } else {
      items_[size_] = item;
    }
    ++size_;
  }
  void resize(std::size_t size) {
    while (size_ < size) emplace_back();
    size_ = size;
  }

  friend bool operator==(const SteadyVector& a, const SteadyVector& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
  }

 private:
  std::vector<T> items_;  // those from size_ on are spare
  std::size_t size_ = 0;
};

}  // namespace poker
