#pragma once

#include <CommandProcessor/core/CommandForward.h>
#include <CommandProcessor/pool/DebugStaticLogger.h>
#include <CommandProcessor/pool/Queue.h>

#include <typeinfo>

namespace poker {

/// Registers a pool's counters with the process's register, under the readable name of its class.
COMMANDPROCESSOR_API void registerPool(const std::type_info& type,
                                       const DebugStaticLogger::DebugStaticLoggerData& data);

/// The idle objects of one command class, first in, first out. It holds as many as were ever in use at once and gives
/// memory back only when it is told to. Any thread.
template <class T>
class Cache_CmdList : public Queue<T*> {
 public:
  /// @param construct  makes a new object: the library's own, since the constructors of commands are private
  constexpr explicit Cache_CmdList(T* (*construct)()) : construct_(construct) {}
  Cache_CmdList(const Cache_CmdList&) = delete;
  Cache_CmdList& operator=(const Cache_CmdList&) = delete;

  /// An idle object as its last user left it, or a new one when there is none.
  /// @throws std::bad_alloc  nothing has changed then
  T& tsGetOrCreate() {
    const std::lock_guard guard(this->lock());
    if (T* idle = take()) return *idle;
    return create();
  }
  /// Puts an object back.
  void tsPush(T* const& object) {
    object->enterPool(sizeof(T));
    Queue<T*>::tsPush(object);
  }
  /// An idle object; null when there is none.
  T* tsGet() {
    const std::lock_guard guard(this->lock());
    return take();
  }
  /// Deletes the idle objects; the counters stay.
  void clearMe() {
    const std::lock_guard guard(this->lock());
    while (T* idle = take()) {
      --living_;
      delete idle;
    }
  }
  void tsClear() { clearMe(); }
  void deleteContent() { clearMe(); }

 private:
  T* take() {
    T* idle = this->tsGetImpl();
    if (idle != nullptr) idle->leavePool(sizeof(T));
    return idle;
  }
  COMMANDPROCESSOR_COLD T& create() {
    if (!registered_) {
      registerPool(typeid(T), data_);
      registered_ = true;
    }
    // Room for every object that may come back: release() then never has to allocate.
    this->reserve(living_ + 1);
    T* object = construct_();
    ++living_;
    data_.add(sizeof(T));
    return *object;
  }

  T* (*const construct_)();
  DebugStaticLogger::DebugStaticLoggerData data_;
  std::uint32_t living_ = 0;
  bool registered_ = false;
};

/// The one way to command objects: take one from the pool of its class, fill it with init() or deserialize() (it still
/// holds the values of its last use), and give it back with its release(). Any thread; the object itself belongs to one
/// thread at a time. Releasing an object twice is not noticed and hands it out to two users: a checking build (CP_CHECKING) aborts
/// there, and at the use of a released object.
template <class T>
class COMMANDPROCESSOR_API CachedCmdCreator {
 public:
  CachedCmdCreator() = delete;

  /// @throws std::bad_alloc
  static T& create() { return cashedCmds.tsGetOrCreate(); }
  /// Puts the object back, as its release() does.
  static void destroy(T& object) { cashedCmds.tsPush(&object); }
  /// Deletes the idle objects.
  static void clearCache() { cashedCmds.clearMe(); }

  /// The pool. One per class in the whole process; it lives in this library, is ready before any constructor runs and
  /// is never destroyed.
  static Cache_CmdList<T>& cashedCmds;
};

// The pools stand in the library: a host's compiler must not look for their definitions.
#ifndef COMMANDPROCESSOR_BUILDING
#define COMMAND(family, code, Class, Processor, handler) \
  extern template Cache_CmdList<Class>& CachedCmdCreator<Class>::cashedCmds;
#include <CommandProcessor/core/CommandList.inc>
#endif

}  // namespace poker
