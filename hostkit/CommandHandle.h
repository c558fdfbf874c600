#pragma once

#include <CommandProcessor/core/PokerCommandI.h>
#include <CommandProcessor/pool/CachedCmdCreator.h>

#include <type_traits>
#include <utility>

namespace poker {

/// Owns one pooled command and gives it back to its pool exactly once. Move-only; empty after it was moved from.
///
///     CommandHandle<SrvMaintenance> notice = make<SrvMaintenance>(text, id);
///     CommandHandle<> any = std::move(notice);           // a handle of a base class, by default of the root
///     queue.tsPush(any.detach());                        // leaves the ownership to the queue ...
///     CommandHandle<> again(*queue.tsGet());             // ... and takes it from there
///
/// One thread at a time, as the command itself.
template <class T = PokerCommandI>
class [[nodiscard]] CommandHandle {
 public:
  /// Overwrites the secrets of a command of one class; CommandClass::wipeSecrets.
  using Wipe = void (*)(PokerCommandI&);

  CommandHandle() noexcept = default;
  /// Takes a command that nobody else will release.
  /// @param wipe  called before the release; null for a command whose content may stay in memory
  explicit CommandHandle(T& command, Wipe wipe = nullptr) noexcept : command_(&command), wipe_(wipe) {}
  CommandHandle(CommandHandle&& other) noexcept
      : command_(std::exchange(other.command_, nullptr)), wipe_(std::exchange(other.wipe_, nullptr)) {}
  template <class U>
  requires(!std::is_same_v<U, T> && std::is_convertible_v<U*, T*>) CommandHandle(CommandHandle<U>&& other)
  noexcept : wipe_(other.wipeFunction()) { command_ = other.detach(); }
  CommandHandle& operator=(CommandHandle&& other) noexcept {
    CommandHandle taken(std::move(other));
    std::swap(command_, taken.command_);
    std::swap(wipe_, taken.wipe_);
    return *this;
  }
  ~CommandHandle() { reset(); }

  /// Takes an object from the pool of T as its last user left it: init() or deserialize() must follow.
  /// @throws std::bad_alloc
  static CommandHandle create() { return CommandHandle(CachedCmdCreator<T>::create()); }

  T* get() const noexcept { return command_; }
  T& operator*() const noexcept { return *command_; }
  T* operator->() const noexcept { return command_; }
  explicit operator bool() const noexcept { return command_ != nullptr; }

  /// Gives the command back now.
  void reset() noexcept {
    T* command = std::exchange(command_, nullptr);
    const Wipe wipe = std::exchange(wipe_, nullptr);
    if (command == nullptr) return;
    if (wipe != nullptr) wipe(*command);
    command->release();
  }
  /// Hands the command out, which the caller must release; null from an empty handle. Nobody wipes it then.
  T* detach() noexcept {
    wipe_ = nullptr;
    return std::exchange(command_, nullptr);
  }

  /// Has the secrets overwritten before the release; null takes that back. For a T that is a concrete class.
  void wipeBeforeRelease() requires requires(T& command) { command.wipeSecrets(); }
  {
    wipe_ = [](PokerCommandI& command) { static_cast<T&>(command).wipeSecrets(); };
  }
  void wipeBeforeRelease(Wipe wipe) noexcept { wipe_ = wipe; }
  Wipe wipeFunction() const noexcept { return wipe_; }

 private:
  T* command_ = nullptr;
  Wipe wipe_ = nullptr;
};

/// Takes a command from the pool of T and fills it with `init(args...)`. Without arguments for a class whose init()
/// wants some, it comes with no connection ids and the values of its last use: its init() must follow.
/// @throws std::bad_alloc
template <class T, class... Args>
CommandHandle<T> make(Args&&... args) {
  CommandHandle<T> command = CommandHandle<T>::create();
  if constexpr (sizeof...(Args) == 0 && !requires { command->init(); }) {
    command->clearConnections();
  } else {
    command->init(std::forward<Args>(args)...);
  }
  return command;
}

}  // namespace poker
