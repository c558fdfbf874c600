#pragma once

// What runs over a field list (FieldWords.h): one archive each to write, read, reset, measure, wipe and show the
// fields.

#include <CommandProcessor/platform/TypeName.h>
#include <CommandProcessor/wire/DeserializeCommandBuf.h>
#include <CommandProcessor/wire/FieldCodecs.h>
#include <CommandProcessor/wire/SerializeCommandBuf.h>

#include <typeinfo>

namespace poker::wire {

/// For archives that go through every part, whether it is there or not.
template <class Archive>
class EveryPart {
 public:
  void zeros(std::uint32_t) {}
  template <class Part>
  void when(std::string_view, bool, Part&& part) {
    part(static_cast<Archive&>(*this));
  }
  template <class Part>
  void present(std::string_view name, bool condition, Part&& part) {
    when(name, condition, part);
  }
  template <class Part>
  void unless(std::string_view name, bool condition, Part&& part) {
    when(name, condition, part);
  }
};

class FieldResetter : public EveryPart<FieldResetter> {
 public:
  template <class X>
  void operator()(std::string_view, X&& value) {
    codecFor(value).reset();
  }
  template <class X>
  void local(X&& value) {
    codecFor(value).reset();
  }
};

template <class Out>
class FieldWriter {
 public:
  explicit FieldWriter(Out& out) : out_(out) {}

  template <class X>
  void operator()(std::string_view, X&& value) {
    codecFor(value).write(out_);
  }
  void zeros(std::uint32_t size) {
    for (std::uint32_t i = 0; i < size; ++i) out_.write(std::uint8_t{0});
  }
  template <class X>
  void local(X&&) {}
  template <class Part>
  void when(std::string_view, bool condition, Part&& part) {
    if (condition) part(*this);
  }
  template <class Part>
  void present(std::string_view, bool condition, Part&& part) {
    out_.write(condition);
    if (condition) part(*this);
  }
  template <class Part>
  void unless(std::string_view, bool condition, Part&& part) {
    out_.write(condition);
    if (!condition) part(*this);
  }

 private:
  Out& out_;
};

template <class In>
class FieldReader {
 public:
  explicit FieldReader(In& in) : in_(in) {}

  template <class X>
  void operator()(std::string_view, X&& value) {
    codecFor(value).read(in_);
  }
  void zeros(std::uint32_t size) { in_.skip(size); }
  template <class X>
  void local(X&& value) {
    codecFor(value).reset();
  }
  template <class Part>
  void when(std::string_view, bool condition, Part&& part) {
    if (condition) {
      part(*this);
    } else {
      FieldResetter resetter;
      part(resetter);
    }
  }
  template <class Part>
  void present(std::string_view name, bool, Part&& part) {
    bool there;
    in_.read(there);
    when(name, there, part);
  }
  template <class Part>
  void unless(std::string_view name, bool, Part&& part) {
    bool empty;
    in_.read(empty);
    when(name, !empty, part);
  }

 private:
  In& in_;
};

/// The fewest bytes that a field list can take.
class FewestBytes {
 public:
  template <class X>
  void operator()(std::string_view, X&& value) {
    size_ += codecFor(value).minSize();
  }
  void zeros(std::uint32_t size) { size_ += size; }
  template <class X>
  void local(X&&) {}
  template <class Part>
  void when(std::string_view, bool, Part&&) {}
  template <class Part>
  void present(std::string_view, bool, Part&&) {
    ++size_;
  }
  template <class Part>
  void unless(std::string_view, bool, Part&&) {
    ++size_;
  }
  std::size_t size() const { return size_; }

 private:
  std::size_t size_ = 0;
};

/// Whether every count and bounded text can be written so that it is read back whole.
class WireFit {
 public:
  template <class X>
  void operator()(std::string_view, X&& value) {
    if constexpr (requires { codecFor(value).fits(); }) fits_ = fits_ && codecFor(value).fits();
  }
  void zeros(std::uint32_t) {}
  template <class X>
  void local(X&&) {}
  template <class Part>
  void when(std::string_view, bool condition, Part&& part) {
    if (condition) part(*this);
  }
  template <class Part>
  void present(std::string_view name, bool condition, Part&& part) {
    when(name, condition, part);
  }
  template <class Part>
  void unless(std::string_view name, bool condition, Part&& part) {
    when(name, !condition, part);
  }
  bool fits() const { return fits_; }

 private:
  bool fits_ = true;
};

/// Overwrites every secret() field, also inside records and the elements of lists.
class SecretWiper : public EveryPart<SecretWiper> {
 public:
  template <class X>
  void operator()(std::string_view, X&& value) {
    wipe(codecFor(value));
  }
  template <class X>
  void local(X&& value) {
    wipe(codecFor(value));
  }

 private:
  template <class C>
  void wipe(const C& codec) {
    if constexpr (isSecret<C>) {
      codec.wipe();
    } else if constexpr (requires { codec.record; }) {
      FieldAccess::fields(codec.record, *this);
    } else if constexpr (requires { codec.elements; }) {
      for (auto& item : codec.elements.items) wipe(codecFor(item));
    }
  }
};

/// Shows a field list to a FieldVisitor; see there for `assign`.
class FieldInspector {
 public:
  FieldInspector(FieldVisitor& visitor, bool assign) : visitor_(visitor), assign_(assign) {}

  template <class X>
  void operator()(std::string_view name, X&& value) {
    codecFor(value).inspect(Field{.name = name}, visitor_, assign_);
  }
  void zeros(std::uint32_t size) { visitor_.zeros({.name = "padding", .type = FieldType::Zeros, .size = size}); }
  template <class X>
  void local(X&& value) {
    if (assign_) codecFor(value).reset();
  }
  template <class Part>
  void when(std::string_view condition, bool there, Part&& part) {
    visitor_.beginPart(condition, there);
    part(*this);
    visitor_.endPart();
  }
  template <class Part>
  void present(std::string_view name, bool there, Part&& part) {
    flag(name, there, there, " is true", part);
  }
  template <class Part>
  void unless(std::string_view name, bool empty, Part&& part) {
    flag(name, empty, !empty, " is false", part);
  }

 private:
  template <class Part>
  void flag(std::string_view name, bool value, bool there, std::string_view condition, Part&& part) {
    std::int64_t number = value;
    visitor_.number({.name = name, .type = FieldType::Bool, .derived = true}, number);
    when(std::string(name).append(condition), there, part);
  }

  FieldVisitor& visitor_;
  bool assign_;
};

/// A record inside another list.
template <class T>
struct RecordCodec : CodecBase {
  T& record;
  explicit RecordCodec(T& value) : record(value) {}

  static std::size_t minSize() {
    static const std::size_t size = [] {
      std::remove_const_t<T> sample{};
      FewestBytes counter;
      FieldAccess::fields(sample, counter);
      return counter.size();
    }();
    return size;
  }
  template <class Out>
  void write(Out& out) const {
    FieldWriter<Out> writer(out);
    FieldAccess::fields(std::as_const(record), writer);
  }
  template <class In>
  void read(In& in) const {
    FieldReader<In> reader(in);
    FieldAccess::fields(record, reader);
  }
  void reset() const { record = std::remove_const_t<T>{}; }
  bool fits() const {
    WireFit fit;
    FieldAccess::fields(std::as_const(record), fit);
    return fit.fits();
  }
  void inspect(Field field, FieldVisitor& visitor, bool assign) const {
    static const std::string name = readableTypeName(typeid(T));
    field.type = FieldType::Record;
    field.typeName = name;
    visitor.beginRecord(field);
    FieldInspector inspector(visitor, assign);
    FieldAccess::fields(record, inspector);
    visitor.endRecord(field);
  }
};

template <RecordType T>
RecordCodec<T> codecOf(T& record) {
  return RecordCodec<T>(record);
}

}  // namespace poker::wire
