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

/// A small ordered map in one block of memory: ascending by key, one value a key.
///
/// clear() keeps the entries' own memory for the next ones, so that a pooled command that is filled again and again
/// allocates nothing. Insertion moves the entries behind it: cheap in key order, which is the order of the wire.
/// A key or value handed to an insertion must not be a part of the same map.
template <class Key, class Value>
class FlatMap {
 public:
  using key_type = Key;
  using mapped_type = Value;
  using value_type = std::pair<Key, Value>;
  using const_iterator = typename std::vector<value_type>::const_iterator;
  using iterator = const_iterator;
  /// What a key is given as: text without making a string of it first.
  using Lookup = std::conditional_t<std::convertible_to<const Key&, std::string_view>, std::string_view, Key>;

  FlatMap() = default;
  FlatMap(std::initializer_list<value_type> entries) {
    for (const auto& [key, value] : entries) set(key, value);
  }
  FlatMap(const FlatMap& other) : entries_(other.begin(), other.end()), size_(other.size_) {}
  FlatMap& operator=(const FlatMap& other) {
    if (this == &other) return *this;
    if (entries_.size() < other.size_) entries_.resize(other.size_);
    std::copy(other.begin(), other.end(), entries_.begin());
    size_ = other.size_;
    return *this;
  }
  FlatMap(FlatMap&& other) noexcept : entries_(std::move(other.entries_)), size_(std::exchange(other.size_, 0)) {
    other.entries_.clear();
  }
  FlatMap& operator=(FlatMap&& other) noexcept {
    entries_.swap(other.entries_);
    std::swap(size_, other.size_);
    return *this;
  }
  ~FlatMap() = default;

  const_iterator begin() const { return entries_.begin(); }
  const_iterator end() const { return entries_.begin() + static_cast<std::ptrdiff_t>(size_); }
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  void clear() { size_ = 0; }
  void reserve(std::size_t size) { entries_.reserve(size); }

  const_iterator find(const Lookup& key) const {
    const auto place = lowerBound(key);
    return place != end() && !(key < place->first) ? place : end();
  }
  bool contains(const Lookup& key) const { return find(key) != end(); }
  /// The value under the key, which is inserted with an empty value when it is not there.
  Value& operator[](const Lookup& key) {
    auto place = lowerBound(key) - entries_.cbegin();
    if (static_cast<std::size_t>(place) == size_ || key < entries_[static_cast<std::size_t>(place)].first)
      insertAt(place, key);
    return entries_[static_cast<std::size_t>(place)].second;
  }
  /// Sets the value under the key, replacing one that is there.
  template <class V>
  void set(const Lookup& key, V&& value) {
    (*this)[key] = std::forward<V>(value);
  }
  bool erase(const Lookup& key) {
    const auto place = find(key);
    if (place == end()) return false;
    const auto first = entries_.begin() + (place - entries_.cbegin());
    std::rotate(first, first + 1, entries_.begin() + static_cast<std::ptrdiff_t>(size_));
    --size_;
    return true;
  }
  /// A place for an entry that is not yet part of the map, with whatever memory an earlier entry left there. Fill in
  /// its key and value, then call appendSpare().
  value_type& spare() {
    if (size_ == entries_.size()) entries_.emplace_back();
    return entries_[size_];
  }
  /// Makes the spare entry the last one, wherever it belongs: for many that arrive in any order. order() must follow
  /// before anything but spare() is asked of the map.
  void appendSpare() { ++size_; }
  /// Puts appended entries in their places; of those with the same key the last one stays.
  void order() {
    const auto key = [](const value_type& entry) -> const Key& { return entry.first; };
    const auto disorder = [](const value_type& a, const value_type& b) { return !(a.first < b.first); };
    const auto last = entries_.begin() + static_cast<std::ptrdiff_t>(size_);
    if (std::adjacent_find(entries_.begin(), last, disorder) == last) return;
    detail::sortByKey(entries_.begin(), last, key);
    const auto newer = [](value_type& stays, value_type& goes) { std::swap(stays.second, goes.second); };
    const auto stay = detail::dropTies(entries_.begin(), last, key, newer);
    size_ = static_cast<std::size_t>(stay - entries_.begin());
  }
  /// Gives the memory back that earlier, larger contents needed.
  void shrink_to_fit() {
    entries_.resize(size_);
    entries_.shrink_to_fit();
  }

  friend bool operator==(const FlatMap& a, const FlatMap& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
  }

 private:
  const_iterator lowerBound(const Lookup& key) const {
    // Entries mostly arrive in key order: look at the end first.
    if (size_ != 0 && entries_[size_ - 1].first < key) return end();
    return std::lower_bound(begin(), end(), key,
                            [](const value_type& entry, const Lookup& k) { return entry.first < k; });
  }
  void insertAt(std::ptrdiff_t place, const Lookup& key) {
    value_type& entry = spare();
    entry.first = key;
    entry.second = Value{};
    const auto last = entries_.begin() + static_cast<std::ptrdiff_t>(size_);
    std::rotate(entries_.begin() + place, last, last + 1);
    ++size_;
  }

  std::vector<value_type> entries_;  // those from size_ on are spare
  std::size_t size_ = 0;
};

}  // namespace poker
