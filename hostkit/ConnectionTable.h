#pragma once

#include <CommandProcessor/types/TypeWrapper.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

namespace poker {

/// A new connection id: positive, above all earlier ones, never given twice in a process, so that whatever still holds
/// an old id can never reach a newer connection with it. Any thread.
/// @return the invalid id when all 2,147,483,647 are used up (at a hundred connections a second after eight months):
/// the
///         host then takes no more connections and has to be restarted; connectionIDsLeft() tells in good time
ConnectionID nextConnectionID() noexcept;
std::uint32_t connectionIDsLeft() noexcept;

/// The connections of a host by their ids. T is what the host keeps for one: a std::shared_ptr of its session, a value,
/// ... Not locked: for the thread of the connections' event loop.
template <class T>
class ConnectionTable {
 public:
  /// Adds a connection under a new id.
  /// @return its id; the invalid id, and nothing is added, when there are no ids left
  ConnectionID add(T value) {
    const ConnectionID id = nextConnectionID();
    if (id.isValid()) entries_.emplace(id.value(), std::move(value));
    return id;
  }
  /// @return whether it was there. Inside forEach() the value lives on until the outermost forEach() is over.
  bool remove(const ConnectionID& id) {
    const auto place = entries_.find(id.value());
    if (place == entries_.end()) return false;
    auto node = entries_.extract(place);
    if (walking_ != 0) removed_.push_back(std::move(node));
    return true;
  }
  /// Null when the id is not, or no longer, that of a connection.
  T* find(const ConnectionID& id) {
    const auto place = entries_.find(id.value());
    return place == entries_.end() ? nullptr : &place->second;
  }
  std::size_t size() const { return entries_.size(); }
  bool empty() const { return entries_.empty(); }

  /// Calls `f(id, value)` for each connection that is there, oldest first. `f` may add and remove connections: one that
  /// is removed before its turn is left out, and so is one that is added meanwhile.
  template <class F>
  void forEach(F&& f) {
    if (entries_.empty()) return;
    const Walk walk(*this);
    const std::int32_t last = entries_.rbegin()->first;
    for (auto place = entries_.begin(); place != entries_.end() && place->first <= last;) {
      const std::int32_t id = place->first;
      f(ConnectionID(id), place->second);
      place = entries_.upper_bound(id);
    }
  }

 private:
  using Entries = std::map<std::int32_t, T>;

  struct Walk {
    explicit Walk(ConnectionTable& walked) : table(walked) { ++table.walking_; }
    ~Walk() {
      if (--table.walking_ == 0) std::exchange(table.removed_, {});
    }
    ConnectionTable& table;
  };

  Entries entries_;
  std::vector<typename Entries::node_type> removed_;
  std::uint32_t walking_ = 0;
};

/// Which connection speaks for a user, a seat, ... now. When a user comes back on a new connection while the old one
/// has not been noticed dead, the end of the old one must not undo the new one: ids rise, so the newer one wins
/// whatever the order of events. Not locked.
template <class Key>
class ConnectionOf {
 public:
  /// Lets the connection speak for the key, unless a newer one does.
  /// @return the connection that spoke before and was put aside (the host closes it), or the invalid id
  ConnectionID bind(const Key& key, const ConnectionID& id) {
    ConnectionID& bound = bound_[key];
    if (bound.isValid() && bound.value() >= id.value()) return {};
    return std::exchange(bound, id);
  }
  /// Ends it, if it is this connection that speaks for the key.
  /// @return whether it was
  bool unbind(const Key& key, const ConnectionID& id) {
    const auto place = bound_.find(key);
    if (place == bound_.end() || place->second != id) return false;
    bound_.erase(place);
    return true;
  }
  /// The invalid id when nobody speaks for the key.
  ConnectionID find(const Key& key) const {
    const auto place = bound_.find(key);
    return place == bound_.end() ? ConnectionID() : place->second;
  }
  std::size_t size() const { return bound_.size(); }

 private:
  std::map<Key, ConnectionID> bound_;
};

}  // namespace poker
