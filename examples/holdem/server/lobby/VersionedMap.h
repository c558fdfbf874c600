#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <utility>
#include <vector>

namespace poker::holdem {

/// Values by key that know in which version each of them changed last, beside the keys that were removed, with theirs: so
/// that it tells what is different since any of its versions. A removed key is kept until it comes again. One thread at a
/// time.
template <class Key, class Value>
class VersionedMap {
 public:
  /// Gives the number of what changes now: above 0, and never below an earlier one. May throw; nothing has changed then.
  using NextVersion = std::function<std::uint32_t()>;

  /// Counts its versions itself: 1 when it is empty, then one more for each change.
  VersionedMap() : VersionedMap([last = std::uint32_t{0}]() mutable { return ++last; }) {}
  /// Its first version, empty, is `next()`.
  explicit VersionedMap(NextVersion next) : next_(std::move(next)), first_(next_()), version_(first_) {}

  /// Adds the value, or replaces the one under the key if `same(before, value)` does not hold.
  /// @return the value that is held now if this has changed something, otherwise null
  template <class Same = std::equal_to<>>
  Value* set(const Key& key, const Value& value, Same&& same = Same()) {
    auto place = entries_.find(key);
    if (place != entries_.end() && same(std::as_const(place->second.value), value)) return nullptr;
    version_ = next_();
    if (place == entries_.end()) {
      std::erase_if(removed_, [&](const Removed& gone) { return gone.key == key; });
      place = entries_.try_emplace(key).first;
    }
    place->second.value = value;
    place->second.version = version_;
    return &place->second.value;
  }
  /// Takes the key away, if it is there.
  void remove(const Key& key) {
    const auto place = entries_.find(key);
    if (place == entries_.end()) return;
    version_ = next_();
    removed_.push_back({key, version_});
    entries_.erase(place);
  }

  /// Null when the key is not there.
  const Value* find(const Key& key) const {
    const auto place = entries_.find(key);
    return place == entries_.end() ? nullptr : &place->second.value;
  }
  std::size_t size() const { return entries_.size(); }
  /// The newest one.
  std::uint32_t version() const { return version_; }

  /// Calls `f(key, value)` for what is new or different since that version, ascending by key; for everything when the
  /// version is 0, or not from here.
  template <class F>
  void forEachChanged(std::uint32_t since, F&& f) const {
    const bool wantsAll = !isOwn(since);
    for (const auto& [key, entry] : entries_) {
      if (wantsAll || entry.version > since) f(key, entry.value);
    }
  }
  /// Calls `f(key)` for what was removed since that version, in that order; not at all when it is 0, or not from here.
  template <class F>
  void forEachRemoved(std::uint32_t since, F&& f) const {
    if (!isOwn(since)) return;
    auto gone = std::upper_bound(removed_.begin(), removed_.end(), since,
                                 [](std::uint32_t version, const Removed& each) { return version < each.version; });
    for (; gone != removed_.end(); ++gone) f(gone->key);
  }

 private:
  struct Entry {
    Value value;
    std::uint32_t version = 0;
  };
  struct Removed {
    Key key;
    std::uint32_t version;
  };

  bool isOwn(std::uint32_t version) const { return version >= first_ && version <= version_; }

  NextVersion next_;
  std::map<Key, Entry> entries_;
  std::vector<Removed> removed_;  // oldest first
  std::uint32_t first_;
  std::uint32_t version_;
};

}  // namespace poker::holdem
