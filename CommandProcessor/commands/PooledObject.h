#pragma once

#include <CommandProcessor/pool/CachedCmdCreator.h>

#include <utility>

namespace poker {

/// An object taken from its pool that goes back there unless it is kept: while it is being filled, memory may run out.
template <class T>
class PooledObject {
 public:
  PooledObject() : object_(&CachedCmdCreator<T>::create()) {}
  PooledObject(const PooledObject&) = delete;
  PooledObject& operator=(const PooledObject&) = delete;
  ~PooledObject() {
    if (object_ != nullptr) CachedCmdCreator<T>::destroy(*object_);
  }

  T& operator*() const { return *object_; }
  T* operator->() const { return object_; }
  /// From here on the caller releases it.
  T* keep() { return std::exchange(object_, nullptr); }

 private:
  T* object_;
};

}  // namespace poker
