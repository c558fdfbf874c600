#pragma once

#include <CommandProcessor/wire/FieldArchives.h>
#include <CommandProcessor/wire/Record.h>

namespace poker {

template <class T>
void Record<T>::serialize(SerializeCommandBuf& buf) const {
  wire::FieldWriter<SerializeCommandBuf> writer(buf);
  FieldAccess::fields(static_cast<const T&>(*this), writer);
}

template <class T>
void Record<T>::deserialize(DeserializeCommandBuf& buf) {
  wire::FieldReader<DeserializeCommandBuf> reader(buf);
  FieldAccess::fields(static_cast<T&>(*this), reader);
}

template <class T>
void Record<T>::visitFields(FieldVisitor& visitor) const {
  wire::FieldInspector inspector(visitor, false);
  FieldAccess::fields(const_cast<T&>(static_cast<const T&>(*this)), inspector);
}

template <class T>
void Record<T>::assignFields(FieldVisitor& visitor) {
  wire::FieldInspector inspector(visitor, true);
  FieldAccess::fields(static_cast<T&>(*this), inspector);
}

template <class T>
bool Record<T>::fitsOnWire() const {
  wire::WireFit fit;
  FieldAccess::fields(static_cast<const T&>(*this), fit);
  return fit.fits();
}

}  // namespace poker
