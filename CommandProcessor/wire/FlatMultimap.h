#pragma once

#include <CommandProcessor/wire/FlatOrder.h>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace poker {

/// A small ordered multimap in one block of memory: ascending by key, entries with equal keys in the order of their
/// insertion. clear() keeps the block. Insertion is cheap in key order, which is the order of the wire.
template <class Key, class Value>
class FlatMultimap {
 public:
  using key_type = Key;
  using mapped_type = Value;
  using value_type = std::pair<Key, Value>;
  using const_iterator = typename std::vector<value_type>::const_iterator;
  using iterator = const_iterator;

  const_iterator begin() const { return entries_.begin(); }
  const_iterator end() const { return entries_.end(); }
  std::size_t size() const { return entries_.size(); }
  bool empty() const { return entries_.empty(); }
  void clear() { entries_.clear(); }

  /// The entries under the key: from the first to behind the last.
  std::pair<const_iterator, const_iterator> equal_range(const Key& key) const {
    const auto first =
        std::lower_bound(begin(), end(), key, [](const value_type& entry, const Key& k) { return entry.first < k; });
    return {first, behind(first, key)};
  }
  /// Behind those with an equal key.
  const_iterator insert(value_type entry) {
    // Entries mostly arrive in key order: look at the end first.
    const bool atEnd = entries_.empty() || !(entry.first < entries_.back().first);
    const auto place = atEnd ? entries_.cend() : behind(begin(), entry.first);
    return entries_.insert(place, std::move(entry));
  }
  /// Makes the entry the last one, wherever it belongs: for many that arrive in any order. order() must follow before
  /// anything else is asked of the map.
  void append(value_type entry) { entries_.push_back(std::move(entry)); }
  /// Puts appended entries in their places.
  void order() {
    const auto less = [](const value_type& a, const value_type& b) { return a.first < b.first; };
    if (std::is_sorted(begin(), end(), less)) return;
    detail::sortByKey(entries_.begin(), entries_.end(),
                      [](const value_type& entry) -> const Key& { return entry.first; });
  }

 private:
  const_iterator behind(const_iterator first, const Key& key) const {
    return std::upper_bound(first, end(), key, [](const Key& k, const value_type& entry) { return k < entry.first; });
  }

  std::vector<value_type> entries_;
};

}  // namespace poker
