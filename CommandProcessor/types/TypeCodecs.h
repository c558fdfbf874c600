#pragma once

// How the value types of this folder travel (see wire/FieldCodecs.h).

#include <CommandProcessor/types/Card.h>
#include <CommandProcessor/types/NextTurnOptions.h>
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

/// A card travels as one byte, which visitors see as a record of three numbers.
template <class T>
struct CardCodec : CodecBase {
  T& held;
  explicit CardCodec(T& value) : held(value) {}

  static constexpr std::size_t minSize() { return 1; }
  template <class Out>
  void write(Out& out) const {
    out.write(held.toByte());
  }
  template <class In>
  void read(In& in) const {
    std::uint8_t byte;
    in.read(byte);
    held = Card::fromByte(byte);
  }
  void reset() const { held = Card(); }
  /// The face of a hidden card is kept from the receiver on purpose; any other card must be read back as it is.
  bool fits() const { return held.visibility() == Card::Visibility::Hidden || Card::fromByte(held.toByte()) == held; }
  void inspect(Field field, FieldVisitor& visitor, bool assign) const {
    field.type = FieldType::Record;
    field.typeName = "card";
    field.size = 1;
    const auto number = [&](std::string_view name, auto value) {
      const auto bits = static_cast<std::uint32_t>(value);
      return static_cast<decltype(value)>(inspectNumber({.name = name, .type = FieldType::U32}, bits, visitor));
    };
    visitor.beginRecord(field);
    const auto suit = number("suit", held.suit());
    const auto rank = number("rank", held.rank());
    const auto visibility = number("visibility", held.visibility());
    if (assign) {
      held = Card(suit, rank, visibility);
      if (!fits()) throw FieldValueError(field, "there is no byte for such a card");
    }
    visitor.endRecord(field);
  }
};

/// A count (byte), then for each action its code, its least amount and, only when `haveMinMax` holds, its largest one.
template <class M, class F>
struct TurnRangesCodec : CodecBase {
  using Range = typename std::remove_const_t<M>::mapped_type;
  M& held;
  F& haveMinMax;
  TurnRangesCodec(M& options, F& flag) : held(options), haveMinMax(flag) {}

  static constexpr std::size_t minSize() { return countSize<std::uint8_t>(); }
  template <class Out>
  void write(Out& out) const {
    writeCount<std::uint8_t>(out, held.size());
    for (auto& [action, range] : held) {
      codecOf(action).write(out);
      codecOf(range.first).write(out);
      if (haveMinMax) codecOf(range.second).write(out);
    }
  }
  template <class In>
  void read(In& in) const {
    const Filling filling(held);
    const std::uint32_t count = readCount<std::uint8_t>(in);
    for (std::uint32_t i = 0; i < count; ++i) {
      auto& [action, range] = held.spare();
      codecOf(action).read(in);
      codecOf(range.first).read(in);
      range.second = range.first;
      if (haveMinMax) codecOf(range.second).read(in);
      held.appendSpare();
    }
  }
  void reset() const { held.clear(); }
  bool fits() const { return held.size() <= largestCount<std::uint8_t>(); }
  void inspect(Field field, FieldVisitor& visitor, bool assign) const {
    field.type = FieldType::Map;
    describeCount<std::uint8_t>(field);
    const std::size_t size = visitor.beginMap(field, held.size());
    if (assign && size > largestCount<std::uint8_t>()) throw FieldValueError(field, "too many entries for their count");
    auto place = held.begin();
    std::remove_const_t<M> assigned;
    for (std::size_t i = 0; i < size; ++i) {
      typename std::remove_const_t<M>::value_type entry{};
      if (!assign && place != held.end()) entry = *place++;
      visitor.beginEntry();
      codecOf(entry.first).inspect({.name = "key"}, visitor, assign);
      const Field value{.name = "value", .type = FieldType::Record, .typeName = "TurnRange"};
      visitor.beginRecord(value);
      codecOf(entry.second.first).inspect({.name = "minimum"}, visitor, assign);
      visitor.beginPart("haveMinMax is true", haveMinMax);
      codecOf(entry.second.second).inspect({.name = "maximum"}, visitor, assign);
      visitor.endPart();
      visitor.endRecord(value);
      visitor.endEntry();
      if (!haveMinMax) entry.second.second = entry.second.first;  // as reading leaves it
      if (assign) assigned.set(entry.first, entry.second);
    }
    visitor.endMap(field);
    if (assign) held = std::move(assigned);
  }
};

template <class M, class F>
TurnRangesCodec<M, F> turnRanges(M& options, F& haveMinMax) {
  return TurnRangesCodec<M, F>(options, haveMinMax);
}

}  // namespace wire

/// A record that is one list (`asList`): inside other field lists it stands as that list, not as a record with one field.
template <class T>
concept ListRecord = wire::RecordType<T> && requires(T& record) {
  std::remove_const_t<T>::asList(record);
};
template <ListRecord T>
auto codecOf(T& record) {
  return std::remove_const_t<T>::asList(record);
}

inline wire::CardCodec<Card> codecOf(Card& value) { return wire::CardCodec<Card>(value); }
inline wire::CardCodec<const Card> codecOf(const Card& value) { return wire::CardCodec<const Card>(value); }
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
