#pragma once

#include <CommandProcessor/wire/FlatOrder.h>

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <initializer_list>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace poker {

/// A small ordered set in one block of memory: ascending, no duplicates. As a FlatMap, clear() keeps the elements' own
/// memory for the next ones, and insertion is cheap in ascending order, which is the order of the wire.
template <class T>
class FlatSet {
 public:
  using value_type = T;
  using const_iterator = typename std::vector<T>::const_iterator;
  using iterator = const_iterator;
  /// What an element is looked up by: text without making a string of it first.
  using Lookup = std::conditional_t<std::convertible_to<const T&, std::string_view>, std::string_view, T>;

  FlatSet() = default;
  FlatSet(std::initializer_list<T> items) {
    for (const T& item : items) insert(item);
  }
  FlatSet(const FlatSet& other) : items_(other.begin(), other.end()), size_(other.size_) {}
  FlatSet& operator=(const FlatSet& other) {
    if (this == &other) return *this;
    if (items_.size() < other.size_) items_.resize(other.size_);
    std::copy(other.begin(), other.end(), items_.begin());
    size_ = other.size_;
    return *this;
  }
  FlatSet(FlatSet&& other) noexcept : items_(std::move(other.items_)), size_(std::exchange(other.size_, 0)) {
    other.items_.clear();
  }
  FlatSet& operator=(FlatSet&& other) noexcept {
    items_.swap(other.items_);
    std::swap(size_, other.size_);
    return *this;
  }
  ~FlatSet() = default;

  const_iterator begin() const { return items_.begin(); }
  const_iterator end() const { return items_.begin() + static_cast<std::ptrdiff_t>(size_); }
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  void clear() { size_ = 0; }
  void reserve(std::size_t size) { items_.reserve(size); }

  bool contains(const Lookup& item) const {
    const auto place = lowerBound(item);
    return place != end() && !(item < *place);
  }
  /// @param item  not a part of this set
  /// @return whether the element is new
  bool insert(const T& item) {
    spare() = item;
    const auto last = items_.begin() + static_cast<std::ptrdiff_t>(size_);
    const auto place = lowerBound(item);
    if (place != end() && !(item < *place)) return false;
    std::rotate(items_.begin() + (place - items_.cbegin()), last, last + 1);
    ++size_;
    return true;
  }
  /// @param item  not a part of this set
  /// @return whether the element was there
  bool erase(const Lookup& item) {
    const auto place = lowerBound(item);
    if (place == end() || item < *place) return false;
    const auto first = items_.begin() + (place - items_.cbegin());
    std::rotate(first, first + 1, items_.begin() + static_cast<std::ptrdiff_t>(size_));
    --size_;
    return true;
  }
  /// A place for an element that is not yet part of the set, with whatever memory an earlier one left there. Fill it
  /// in, then call appendSpare().
  T& spare() {
    if (size_ == items_.size()) items_.emplace_back();
    return items_[size_];
  }
  /// Makes the spare element the last one, wherever it belongs: for many that arrive in any order. order() must follow
  /// before anything but spare() is asked of the set.
  void appendSpare() {
    const auto spare = items_.begin() + static_cast<std::ptrdiff_t>(size_);
    if (size_ == 0 || spare[-1] < *spare || *spare < spare[-1]) ++size_;
  }
  /// Puts appended elements in their places and drops those that are there already.
  void order() {
    const auto key = [](const T& item) -> const T& { return item; };
    const auto last = items_.begin() + static_cast<std::ptrdiff_t>(size_);
    if (std::is_sorted(items_.begin(), last)) return;  // without ties, which were never appended
    detail::sortByKey(items_.begin(), last, key);
    const auto stay = detail::dropTies(items_.begin(), last, key, [](T&, T&) {});
    size_ = static_cast<std::size_t>(stay - items_.begin());
  }

  friend bool operator==(const FlatSet& a, const FlatSet& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
  }

 private:
  const_iterator lowerBound(const Lookup& item) const {
    // Elements mostly arrive in order: look at the end first.
    if (size_ != 0 && items_[size_ - 1] < item) return end();
    return std::lower_bound(begin(), end(), item);
  }

  std::vector<T> items_;  // those from size_ on are spare
  std::size_t size_ = 0;
};

}  // namespace poker
