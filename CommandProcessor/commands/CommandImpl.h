#pragma once

// The bodies of Command<T>. Included by the sources of commands alone, so that the many files that use commands compile
// quickly and every body exists once, in the library.

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/Handlers.h>
#include <CommandProcessor/commands/PooledObject.h>
#include <CommandProcessor/core/FieldsImpl.h>

namespace poker {

namespace detail {

/// Storage for an object that is ready before any constructor runs and is never destroyed.
template <class T>
union NeverDestroyed {
  T value;
  template <class... Args>
  constexpr explicit NeverDestroyed(Args... args) : value(args...) {}
  ~NeverDestroyed() {}
};

#if defined(__clang__)
#define POKER_NO_DESTROY [[clang::no_destroy]]
#else
#define POKER_NO_DESTROY  // g++ sees for itself that there is nothing to destroy
#endif

template <class T>
POKER_NO_DESTROY inline constinit NeverDestroyed<Cache_CmdList<T>> pool{&FieldAccess::construct<T>};

#undef POKER_NO_DESTROY

}  // namespace detail

template <class T>
constinit Cache_CmdList<T>& CachedCmdCreator<T>::cashedCmds = detail::pool<T>.value;

template <class T, class Base>
Command<T, Base>::Command() : Base(static_cast<typename Base::TypeCode>(CommandInfo<T>::code)) {}

template <class T, class Base>
Command<T, Base>::~Command() = default;

template <class T, class Base>
PokerCommandI* Command<T, Base>::clone() {
  this->requireInUse("clone()");
  PooledObject<T> copy;
  *copy = static_cast<T&>(*this);
  return copy.keep();
}

template <class T, class Base>
void Command<T, Base>::serialize(SerializeCommandBuf& buf) const {
  this->requireInUse("serialize()");
  serializeFields(static_cast<const T&>(*this), CommandInfo<T>::family, buf);
}

template <class T, class Base>
void Command<T, Base>::deserialize(DeserializeCommandBuf& buf) {
  this->requireInUse("deserialize()");
  deserializeFields(static_cast<T&>(*this), buf);
}

template <class T, class Base>
void Command<T, Base>::release() {
  CachedCmdCreator<T>::destroy(static_cast<T&>(*this));
}

template <class T, class Base>
void Command<T, Base>::process([[maybe_unused]] Results& results, [[maybe_unused]] Processor& processor) {
  this->requireInUse("process()");
  detail::Handler<T>::call(results, processor, static_cast<T&>(*this));
}

template <class T, class Base>
void Command<T, Base>::visitFields(FieldVisitor& visitor) const {
  this->requireInUse("visitFields()");
  // The list is run over a mutable object so that one body serves both walks; a looking one writes nothing.
  FieldInspector inspector(visitor, false);
  FieldAccess::fields(const_cast<T&>(static_cast<const T&>(*this)), inspector);
}

template <class T, class Base>
void Command<T, Base>::assignFields(FieldVisitor& visitor) {
  this->requireInUse("assignFields()");
  FieldInspector inspector(visitor, true);
  FieldAccess::fields(static_cast<T&>(*this), inspector);
}

template <class T, class Base>
void Command<T, Base>::wipeSecrets() {
  this->requireInUse("wipeSecrets()");
  SecretWiper wiper;
  FieldAccess::fields(static_cast<T&>(*this), wiper);
}

template <class T, class Base>
bool Command<T, Base>::fitsOnWire() const {
  this->requireInUse("fitsOnWire()");
  WireFit fit;
  FieldAccess::fields(static_cast<const T&>(*this), fit);
  return fit.fits();
}

}  // namespace poker
