#pragma once

// How the value types of this folder travel (see wire/FieldCodecs.h).

#include <CommandProcessor/types/RealMoneyType.h>
#include <CommandProcessor/types/TypeWrapper.h>
#include <CommandProcessor/wire/FieldCodecs.h>

namespace poker {

namespace wire {

/// A wrapped number travels as the number.
template <class T>
struct WrapperCodec : CodecBase {
  using Number = typename std::remove_const_t<T>::value_type;
  T& held;
  explicit WrapperCodec(T& value) : held(value) {}

  static constexpr std::size_t minSize() { return sizeof(Number); }
  template <class Out>
  void write(Out& out) const {
    out.write(held.value());
  }
  template <class In>
  void read(In& in) const {
    Number number;
    in.read(number);
    held = number;
  }
  void reset() const { held = T{}; }
  void inspect(Field field, FieldVisitor& visitor, bool assign) const {
    field.type = fieldTypeOf<Number>();
    const Number number = inspectNumber(field, held.value(), visitor);
    if (assign) held = number;
  }
};

/// Money travels as its signed 64-bit count of hundredths.
template <class T>
struct MoneyCodec : CodecBase {
  T& held;
  explicit MoneyCodec(T& value) : held(value) {}

  static constexpr std::size_t minSize() { return sizeof(std::int64_t); }
  template <class Out>
  void write(Out& out) const {
    out.write(held.hundredths());
  }
  template <class In>
  void read(In& in) const {
    std::int64_t hundredths;
    in.read(hundredths);
    held = RealMoneyType::fromHundredths(hundredths);
  }
  void reset() const { held = T{}; }
  void inspect(Field field, FieldVisitor& visitor, bool assign) const {
    field.type = FieldType::Money;
    std::int64_t hundredths = held.hundredths();
    visitor.number(field, hundredths);
    if (assign) held = RealMoneyType::fromHundredths(hundredths);
  }
};

}  // namespace wire

template <class T, auto Invalid>
wire::WrapperCodec<TypeWrapper<T, Invalid>> codecOf(TypeWrapper<T, Invalid>& value) {
  return wire::WrapperCodec<TypeWrapper<T, Invalid>>(value);
}
template <class T, auto Invalid>
wire::WrapperCodec<const TypeWrapper<T, Invalid>> codecOf(const TypeWrapper<T, Invalid>& value) {
  return wire::WrapperCodec<const TypeWrapper<T, Invalid>>(value);
}
inline wire::MoneyCodec<RealMoneyType> codecOf(RealMoneyType& value) { return wire::MoneyCodec<RealMoneyType>(value); }
inline wire::MoneyCodec<const RealMoneyType> codecOf(const RealMoneyType& value) {
  return wire::MoneyCodec<const RealMoneyType>(value);
}

}  // namespace poker
