#pragma once

#include <type_traits>

namespace poker {

class SerializeCommandBuf;

/// The one friend that a class with a field list names: through it the archives read its fields and the pool constructs
/// it. Hosts have no use for it.
class FieldAccess {
 public:
  template <class T>
  static T* construct() {
    return new T;
  }

  /// Runs the class's field list: `self` is const when the archive only looks.
  template <class Self, class Archive>
  static void fields(Self& self, Archive& archive) {
    std::remove_const_t<Self>::fields(self, archive);
  }

  template <class T>
  static constexpr bool hasFields() {
    return requires(T & self, int& archive) { T::fields(self, archive); };
  }

  /// Lets the class prepare itself (or the buffer) before its frame is written, if it wants to.
  template <class T>
  static void aboutToSerialize(const T& self, SerializeCommandBuf& buf) {
    if constexpr (requires { self.aboutToSerialize(buf); }) self.aboutToSerialize(buf);
  }
};

namespace wire {

/// A value class that states its fields in one list.
template <class T>
concept RecordType = FieldAccess::hasFields<std::remove_const_t<T>>();

}  // namespace wire
}  // namespace poker
