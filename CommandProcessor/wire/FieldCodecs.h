#pragma once

// What the words of a field list (FieldWords.h) mean. A codec is a small object that refers to the value held and knows
// all about its way to the wire and back: writing, reading, what it is left as when it is absent, the fewest bytes it
// can take, and how it shows itself to a FieldVisitor. To add a word, add its codec here, in one place.

#include <CommandProcessor/platform/COleDateTime.h>
#include <CommandProcessor/wire/CommandDeserializeException.h>
#include <CommandProcessor/wire/FieldVisitor.h>
#include <CommandProcessor/wire/FieldWords.h>
#include <CommandProcessor/wire/FlatMap.h>
#include <CommandProcessor/wire/WireNumber.h>

#include <array>
#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace poker::wire {

/// Base of all codecs, so that a field list may hold values and codecs alike.
struct CodecBase {};

template <class T>
concept Codec = std::derived_from<std::remove_cvref_t<T>, CodecBase>;

// --- numbers ---------------------------------------------------------------------------------------------------------

template <class W>
constexpr FieldType fieldTypeOf() {
  if constexpr (std::same_as<W, bool>)
    return FieldType::Bool;
  else if constexpr (std::same_as<W, double>)
    return FieldType::Double;
  else if constexpr (sizeof(W) == 1)
    return FieldType::Byte;
  else if constexpr (sizeof(W) == 2)
    return std::is_signed_v<W> ? FieldType::I16 : FieldType::U16;
  else if constexpr (sizeof(W) == 4)
    return std::is_signed_v<W> ? FieldType::I32 : FieldType::U32;
  else
    return std::is_signed_v<W> ? FieldType::I64 : FieldType::U64;
}

/// Shows a number to a visitor and hands back what the visitor left there.
template <class W>
W inspectNumber(Field field, W value, FieldVisitor& visitor) {
  using Shown = std::conditional_t<sizeof(W) == 1 && !std::same_as<W, bool>, std::uint8_t, W>;
  auto number = static_cast<std::int64_t>(static_cast<Shown>(value));
  visitor.number(field, number);
  if constexpr (sizeof(W) < 8)
    checkFieldRange(field, number, std::numeric_limits<Shown>::min(), std::numeric_limits<Shown>::max());
  return static_cast<W>(static_cast<Shown>(number));
}

/// A number, bool or enumeration held as T that travels as W.
template <class W, class T>
struct NumberCodec : CodecBase {
  T& held;
  explicit NumberCodec(T& value) : held(value) {}

  static constexpr std::size_t minSize() { return sizeof(W); }
  template <class Out>
  void write(Out& out) const {
    out.write(static_cast<W>(held));
  }
  template <class In>
  void read(In& in) const {
    W value;
    in.read(value);
    held = static_cast<T>(value);
  }
  void reset() const { held = T{}; }
  void inspect(Field field, FieldVisitor& visitor, bool assign) const {
    field.type = fieldTypeOf<W>();
    if constexpr (std::same_as<W, double>) {
      double value = held;
      visitor.real(field, value);
      if (assign) held = value;
    } else {
      const W value = inspectNumber(field, static_cast<W>(held), visitor);
      if (!assign) return;
      // What is held may be narrower than what travels.
      if (static_cast<W>(static_cast<T>(value)) != value) throw FieldValueError(field, "is out of range");
      held = static_cast<T>(value);
    }
  }
};

template <class T>
struct WireOf {
  using Type = T;
};
template <class T>
requires std::is_enum_v<T>
struct WireOf<T> {
  using Type = std::underlying_type_t<T>;
};

template <class T>
requires(std::is_arithmetic_v<T> ||
         std::is_enum_v<T>) NumberCodec<typename WireOf<std::remove_const_t<T>>::Type, T> codecOf(T& value) {
  return NumberCodec<typename WireOf<std::remove_const_t<T>>::Type, T>(value);
}

/// A number that travels as a W: narrower (its low bits) or wider (sign-extended when what is held is signed).
template <class W, class T>
NumberCodec<W, T> as(T& value) {
  return NumberCodec<W, T>(value);
}

// --- date-times ------------------------------------------------------------------------------------------------------

/// Shows a day count and hands back what the visitor left there. By memory, since some processors' registers change a
/// NaN.
inline std::uint64_t inspectDays(const Field& field, std::uint64_t bits, FieldVisitor& visitor) {
  double days;
  std::memcpy(&days, &bits, sizeof days);
  visitor.real(field, days);
  std::memcpy(&bits, &days, sizeof bits);
  return bits;
}

/// The day count alone; what is read is valid.
template <class T>
struct DateTimeCodec : CodecBase {
  T& held;
  explicit DateTimeCodec(T& value) : held(value) {}

  static constexpr std::size_t minSize() { return sizeof(double); }
  template <class Out>
  void write(Out& out) const {
    out.write(held.bits());
  }
  template <class In>
  void read(In& in) const {
    std::uint64_t bits;
    in.read(bits);
    held = COleDateTime::fromBits(bits, COleDateTime::valid);
  }
  void reset() const { held = COleDateTime{}; }
  void inspect(Field field, FieldVisitor& visitor, bool assign) const {
    field.type = FieldType::DateTime;
    const std::uint64_t bits = inspectDays(field, held.bits(), visitor);
    if (assign) held = COleDateTime::fromBits(bits, COleDateTime::valid);
  }
};

inline DateTimeCodec<COleDateTime> codecOf(COleDateTime& value) { return DateTimeCodec<COleDateTime>(value); }
inline DateTimeCodec<const COleDateTime> codecOf(const COleDateTime& value) {
  return DateTimeCodec<const COleDateTime>(value);
}

/// The day count and the status behind it.
template <class T>
struct DateTimeStatusCodec : CodecBase {
  T& held;
  explicit DateTimeStatusCodec(T& value) : held(value) {}

  static constexpr std::size_t minSize() { return sizeof(double) + sizeof(std::int32_t); }
  template <class Out>
  void write(Out& out) const {
    out.write(held.bits());
    out.write(static_cast<std::int32_t>(held.GetStatus()));
  }
  template <class In>
  void read(In& in) const {
    std::uint64_t bits;
    std::int32_t status;
    in.require(minSize());
    in.read(bits);
    in.read(status);
    held = COleDateTime::fromBits(bits, static_cast<COleDateTime::DateTimeStatus>(status));
  }
  void reset() const { held = COleDateTime{}; }
  void inspect(Field field, FieldVisitor& visitor, bool assign) const {
    field.type = FieldType::Record;
    field.typeName = "date-time-status";
    field.size = minSize();
    visitor.beginRecord(field);
    const std::uint64_t bits = inspectDays({.name = "date", .type = FieldType::DateTime}, held.bits(), visitor);
    const auto status =
        inspectNumber({.name = "status", .type = FieldType::I32}, static_cast<std::int32_t>(held.GetStatus()), visitor);
    visitor.endRecord(field);
    if (assign) held = COleDateTime::fromBits(bits, static_cast<COleDateTime::DateTimeStatus>(status));
  }
};

template <class T>
DateTimeStatusCodec<T> dateTimeStatus(T& value) {
  return DateTimeStatusCodec<T>(value);
}

// --- text and raw bytes ----------------------------------------------------------------------------------------------

template <class T>
struct StringCodec : CodecBase {
  T& held;
  explicit StringCodec(T& value) : held(value) {}

  static constexpr std::size_t minSize() { return 1; }
  template <class Out>
  void write(Out& out) const {
    out.write(std::string_view(held));
  }
  template <class In>
  void read(In& in) const {
    in.readString(held);
  }
  void reset() const { held.clear(); }
  void wipe() const {
    zero();
    // What an earlier, shorter secret left inside the string object is reached while the heap block is elsewhere.
    std::string block = std::move(held);
    zero();
    held = std::move(block);
  }
  void inspect(Field field, FieldVisitor& visitor, bool assign) const {
    field.type = FieldType::String;
    std::string value = held;
    visitor.text(field, value);
    if (!assign) return;
    if (value.find('\0') != std::string::npos) throw FieldValueError(field, "a string cannot hold a NUL");
    held = std::move(value);
  }

 private:
  void zero() const {
    held.resize(held.capacity());
    for (volatile char& c : held) c = 0;
    held.clear();
  }
};

inline StringCodec<std::string> codecOf(std::string& value) { return StringCodec<std::string>(value); }
inline StringCodec<const std::string> codecOf(const std::string& value) {
  return StringCodec<const std::string>(value);
}

/// A string that its receiver reads into storage for N characters and a NUL. A longer one is cut when it is written, as
/// a longer one cannot be read.
template <std::size_t N, class T>
struct TextCodec : CodecBase {
  T& held;
  explicit TextCodec(T& value) : held(value) {}

  static constexpr std::size_t minSize() { return 1; }
  template <class Out>
  void write(Out& out) const {
    out.write(std::string_view(held).substr(0, N));
  }
  template <class In>
  void read(In& in) const {
    char storage[N + 1];
    in.readString(storage, sizeof storage);
    held = storage;
  }
  void reset() const { held.clear(); }
  bool fits() const { return held.size() <= N; }
  void inspect(Field field, FieldVisitor& visitor, bool assign) const {
    field.type = FieldType::String;
    field.size = N;
    std::string value = held;
    visitor.text(field, value);
    if (!assign) return;
    if (value.size() > N) throw FieldValueError(field, "has room for " + std::to_string(N) + " characters");
    if (value.find('\0') != std::string::npos) throw FieldValueError(field, "a string cannot hold a NUL");
    held = std::move(value);
  }
};

template <std::size_t N, class T>
TextCodec<N, T> text(T& value) {
  return TextCodec<N, T>(value);
}

/// The count of a list is a signed number, and nothing follows it when it is below 1.
struct BelowOneIsNone {};

/// How a count travels, the most that it can tell, and how many elements it announces.
template <class Count>
struct CountWire {
  using Type = Count;
  static constexpr std::uint64_t kMost = static_cast<std::uint64_t>(std::numeric_limits<Count>::max());
  static constexpr std::uint32_t decode(Count count) { return static_cast<std::uint32_t>(count); }
};
template <>
struct CountWire<BelowOneIsNone> {
  using Type = std::int32_t;
  static constexpr std::uint64_t kMost = std::numeric_limits<std::int32_t>::max();
  static constexpr std::uint32_t decode(std::int32_t count) {
    return count < 1 ? 0 : static_cast<std::uint32_t>(count);
  }
};
template <class T>
struct CountWire<Capped<T>> {
  using Type = std::uint32_t;
  static constexpr std::uint32_t kRefusedAbove = T::kMostElements;
  static constexpr std::uint64_t kMost = kRefusedAbove;
  static std::uint32_t decode(std::uint32_t count) {
    if (count > kMost) throw new CommandDeserializeException(T::kTooManyElements);
    return count;
  }
};

template <class Count>
constexpr std::uint64_t largestCount() {
  return CountWire<Count>::kMost;
}

template <class Count, class Out>
void writeCount(Out& out, std::size_t size) {
  out.write(static_cast<typename CountWire<Count>::Type>(size));
}
template <class Count, class In>
std::uint32_t readCount(In& in) {
  typename CountWire<Count>::Type count;
  in.read(count);
  return CountWire<Count>::decode(count);
}
template <class Count>
constexpr std::size_t countSize() {
  return sizeof(typename CountWire<Count>::Type);
}
template <class Count>
constexpr FieldType countType() {
  return fieldTypeOf<typename CountWire<Count>::Type>();
}
/// Tells the field what stands in front of its elements.
template <class Count>
constexpr void describeCount(Field& field) {
  field.count = countType<Count>();
  field.belowOneIsNone = std::same_as<Count, BelowOneIsNone>;
  if constexpr (requires { CountWire<Count>::kRefusedAbove; }) field.most = CountWire<Count>::kRefusedAbove;
}

template <class Count, class T>
struct BytesCodec : CodecBase {
  T& held;  // a std::vector<std::uint8_t>
  explicit BytesCodec(T& value) : held(value) {}

  static constexpr std::size_t minSize() { return countSize<Count>(); }
  template <class Out>
  void write(Out& out) const {
    writeCount<Count>(out, held.size());
    out.append(held.data(), static_cast<std::uint32_t>(held.size()));
  }
  template <class In>
  void read(In& in) const {
    held.clear();
    const std::uint32_t size = readCount<Count>(in);
    in.require(size);
    held.resize(size);
    in.readNumber(held.data(), size);
  }
  void reset() const { held.clear(); }
  void wipe() const {
    held.resize(held.capacity());
    for (volatile std::uint8_t& byte : held) byte = 0;
    held.clear();
  }
  bool fits() const { return held.size() <= largestCount<Count>(); }
  void inspect(Field field, FieldVisitor& visitor, bool assign) const {
    field.type = FieldType::Bytes;
    describeCount<Count>(field);
    std::vector<std::uint8_t> value = held;
    visitor.bytes(field, value);
    if (!assign) return;
    if (value.size() > largestCount<Count>()) throw FieldValueError(field, "too many bytes for their size");
    held = std::move(value);
  }
};

template <class Count, class T>
BytesCodec<Count, T> bytes(T& value) {
  return BytesCodec<Count, T>(value);
}

/// Exactly N raw bytes.
template <std::size_t N, class T>
struct FixedBytesCodec : CodecBase {
  T& held;
  explicit FixedBytesCodec(T& value) : held(value) {}

  static constexpr std::size_t minSize() { return N; }
  template <class Out>
  void write(Out& out) const {
    out.append(held.data(), N);
  }
  template <class In>
  void read(In& in) const {
    in.readNumber(held.data(), N);
  }
  void reset() const { held = T{}; }
  void inspect(Field field, FieldVisitor& visitor, bool assign) const {
    field.type = FieldType::Bytes;
    field.size = N;
    std::vector<std::uint8_t> value(held.begin(), held.end());
    visitor.bytes(field, value);
    if (!assign) return;
    if (value.size() != N) throw FieldValueError(field, "takes exactly " + std::to_string(N) + " bytes");
    std::copy(value.begin(), value.end(), held.begin());
  }
};

template <std::size_t N>
FixedBytesCodec<N, std::array<std::uint8_t, N>> codecOf(std::array<std::uint8_t, N>& value) {
  return FixedBytesCodec<N, std::array<std::uint8_t, N>>(value);
}
template <std::size_t N>
FixedBytesCodec<N, const std::array<std::uint8_t, N>> codecOf(const std::array<std::uint8_t, N>& value) {
  return FixedBytesCodec<N, const std::array<std::uint8_t, N>>(value);
}

// --- flags -----------------------------------------------------------------------------------------------------------

template <std::uint8_t Mask, class T>
struct FlagBits {
  std::string_view name;
  T& held;
  static constexpr std::uint8_t mask = Mask;
};

/// A bool that is one bit of a flags byte.
template <unsigned Bit, class T>
FlagBits<static_cast<std::uint8_t>(1u << Bit), T> bit(std::string_view name, T& value) {
  static_assert(Bit < 8);
  return {name, value};
}

/// A bool that is written as all bits of Mask and read as true when any of them is set.
template <std::uint8_t Mask, class T>
FlagBits<Mask, T> bits(std::string_view name, T& value) {
  return {name, value};
}

template <class... Bits>
struct FlagsCodec : CodecBase {
  std::tuple<Bits...> parts;
  explicit FlagsCodec(Bits... bits) : parts(bits...) {}

  static constexpr std::size_t minSize() { return 1; }
  template <class Out>
  void write(Out& out) const {
    std::uint8_t byte = 0;
    each([&](auto& part) { byte = static_cast<std::uint8_t>(byte | (part.held ? part.mask : 0)); });
    out.write(byte);
  }
  template <class In>
  void read(In& in) const {
    std::uint8_t byte;
    in.read(byte);
    each([&](auto& part) { part.held = (byte & part.mask) != 0; });
  }
  void reset() const {
    each([](auto& part) { part.held = false; });
  }
  void inspect(Field field, FieldVisitor& visitor, bool assign) const {
    field.type = FieldType::Record;
    field.typeName = "flags";
    field.size = 1;
    visitor.beginRecord(field);
    each([&](auto& part) {
      const Field flag{.name = part.name, .type = FieldType::Bool, .mask = part.mask};
      const bool value = inspectNumber<bool>(flag, part.held, visitor);
      if (assign) part.held = value;
    });
    visitor.endRecord(field);
  }

 private:
  void each(auto&& visit) const {
    std::apply([&](auto&... part) { (visit(part), ...); }, parts);
  }
};

template <class... Bits>
FlagsCodec<Bits...> flags(Bits... bits) {
  return FlagsCodec<Bits...>(bits...);
}

// --- records, defined with the archives (FieldArchives.h) ------------------------------------------------------------

template <class T>
struct RecordCodec;
template <RecordType T>
RecordCodec<T> codecOf(T& record);

/// The codec of a value or, given a codec, that codec.
template <class T>
decltype(auto) codecFor(T&& value) {
  if constexpr (Codec<T>) {
    return static_cast<const std::remove_cvref_t<T>&>(value);
  } else {
    return codecOf(value);
  }
}

template <class T>
using CodecOf = decltype(codecOf(std::declval<T&>()));

// --- lists and maps --------------------------------------------------------------------------------------------------

/// How many elements to set memory aside for: no more than the bytes that are left can hold. Reading fails where they
/// end.
template <class In>
std::size_t possibleElements(const In& in, std::uint32_t count, std::size_t smallest) {
  return std::min<std::size_t>(count, in.remaining() / std::max<std::size_t>(smallest, 1));
}

/// Empties a container for elements that arrive in any order, as they may from a peer, and has a flat one put them in
/// their places once all are there: in time that does not grow with the square of their number. Also when reading ends
/// early.
template <class C>
class Filling {
 public:
  explicit Filling(C& items) : items_(items) { items.clear(); }
  Filling(const Filling&) = delete;
  Filling& operator=(const Filling&) = delete;
  ~Filling() {
    if constexpr (requires { items_.order(); }) items_.order();
  }

 private:
  C& items_;
};

template <class C>
concept Sequence = requires(C& c) {
  c.emplace_back();
  c.resize(0);
  c[0];
};

/// Whether one element of a list or map can be read back whole.
template <class T>
bool fitsAlone(const T& value) {
  if constexpr (requires { codecOf(value).fits(); })
    return codecOf(value).fits();
  else
    return true;
}

/// The elements of a list without their count. Works on sequences (std::vector) and on sorted sets (std::set, FlatSet).
template <class C>
struct Elements {
  using Element = typename std::remove_const_t<C>::value_type;
  C& items;

  template <class Out>
  void write(Out& out) const {
    for (auto& item : items) codecOf(item).write(out);
  }

  template <class In>
  void read(In& in, std::uint32_t count) const {
    if constexpr (Sequence<C>) {
      if (items.size() > count) items.resize(count);
      const std::size_t possible = possibleElements(in, count, CodecOf<Element>::minSize());
      if (items.size() < count) items.reserve(possible);
      for (std::size_t i = 0; i < count; ++i) {
        if (i == possible) {
          // What is left cannot be an element: fails with the element's own text, and before the list grows.
          Element missing{};
          codecOf(missing).read(in);
        }
        if (i == items.size()) items.emplace_back();
        codecOf(items[i]).read(in);
      }
    } else if constexpr (requires { items.appendSpare(); }) {
      const Filling filling(items);
      items.reserve(possibleElements(in, count, CodecOf<Element>::minSize()));
      for (std::uint32_t i = 0; i < count; ++i) {
        codecOf(items.spare()).read(in);
        items.appendSpare();
      }
    } else {
      items.clear();
      for (std::uint32_t i = 0; i < count; ++i) {
        Element item{};
        codecOf(item).read(in);
        items.insert(std::move(item));
      }
    }
  }

  bool fit() const {
    return std::all_of(items.begin(), items.end(), [](const Element& item) { return fitsAlone(item); });
  }

  void inspect(const Field& field, std::uint64_t largest, FieldVisitor& visitor, bool assign) const {
    const std::size_t size = visitor.beginList(field, items.size());
    if (assign && size > largest) throw FieldValueError(field, "too many elements for their count");
    if constexpr (Sequence<C>) {
      if (assign) items.resize(size);
      for (std::size_t i = 0; i < std::min(size, items.size()); ++i) codecOf(items[i]).inspect({}, visitor, assign);
    } else {
      std::size_t shown = 0;
      C assigned;
      for (auto place = items.begin(); place != items.end() && !assign && shown < size; ++place, ++shown) {
        Element item = *place;
        codecOf(item).inspect({}, visitor, false);
      }
      for (; assign && shown < size; ++shown) {
        Element item{};
        codecOf(item).inspect({}, visitor, true);
        assigned.insert(std::move(item));
      }
      if (assign) items = std::move(assigned);
    }
    for (std::size_t i = items.size(); i < size && !assign; ++i) {
      Element empty{};
      codecOf(empty).inspect({}, visitor, false);
    }
    visitor.endList(field);
  }
};

template <class Count, class C>
struct ListCodec : CodecBase {
  Elements<C> elements;
  explicit ListCodec(C& items) : elements{items} {}

  static constexpr std::size_t minSize() { return countSize<Count>(); }
  template <class Out>
  void write(Out& out) const {
    writeCount<Count>(out, elements.items.size());
    elements.write(out);
  }
  template <class In>
  void read(In& in) const {
    if constexpr (!Sequence<C>) elements.items.clear();  // a set is empty also when there is no count
    elements.read(in, readCount<Count>(in));
  }
  void reset() const { elements.items.clear(); }
  bool fits() const { return elements.items.size() <= largestCount<Count>() && elements.fit(); }
  void inspect(Field field, FieldVisitor& visitor, bool assign) const {
    field.type = FieldType::List;
    describeCount<Count>(field);
    elements.inspect(field, largestCount<Count>(), visitor, assign);
  }
};

template <class Count, class C>
ListCodec<Count, C> list(C& items) {
  return ListCodec<Count, C>(items);
}

/// A list whose count stands somewhere in front of it, with other fields between:
///
///     auto tables = counted<std::uint32_t>(self.tables_);
///     field("tableCount", tables.count());
///     field("flag", self.flag_);
///     field("tables", tables);
template <class Count, class C>
class CountedCodec : public CodecBase {
 public:
  explicit CountedCodec(C& items) : elements_{items} {}

  struct CountCodec : CodecBase {
    CountedCodec& list;
    explicit CountCodec(CountedCodec& owner) : list(owner) {}

    static constexpr std::size_t minSize() { return countSize<Count>(); }
    template <class Out>
    void write(Out& out) const {
      writeCount<Count>(out, list.elements_.items.size());
    }
    template <class In>
    void read(In& in) const {
      list.count_ = readCount<Count>(in);
    }
    void reset() const {}
    void inspect(Field field, FieldVisitor& visitor, bool) const {
      field.type = countType<Count>();
      field.derived = true;
      list.countedBy_ = field.name;
      auto size = static_cast<std::int64_t>(list.elements_.items.size());
      visitor.number(field, size);
    }
  };

  CountCodec count() { return CountCodec(*this); }

  static constexpr std::size_t minSize() { return 0; }
  template <class Out>
  void write(Out& out) const {
    elements_.write(out);
  }
  template <class In>
  void read(In& in) const {
    elements_.read(in, count_);
  }
  void reset() const { elements_.items.clear(); }
  bool fits() const { return elements_.items.size() <= largestCount<Count>() && elements_.fit(); }
  void inspect(Field field, FieldVisitor& visitor, bool assign) const {
    field.type = FieldType::List;
    field.countedBy = countedBy_;
    elements_.inspect(field, largestCount<Count>(), visitor, assign);
  }

 private:
  Elements<C> elements_;
  std::uint32_t count_ = 0;
  std::string_view countedBy_;  // the count's name, as it was shown
};

template <class Count, class C>
CountedCodec<Count, C> counted(C& items) {
  return CountedCodec<Count, C>(items);
}

/// A multimap (std::multimap, FlatMultimap) whose rows hold their own key: the rows in key order, those with equal keys
/// in the order of insertion.
template <class Count, class M, class Key>
struct RowsCodec : CodecBase {
  using Row = typename std::remove_const_t<M>::mapped_type;
  M& held;
  Key key;  // pointer to the row's key
  RowsCodec(M& map, Key keyMember) : held(map), key(keyMember) {}

  static constexpr std::size_t minSize() { return countSize<Count>(); }
  template <class Out>
  void write(Out& out) const {
    writeCount<Count>(out, held.size());
    for (auto& entry : held) codecOf(entry.second).write(out);
  }
  template <class In>
  void read(In& in) const {
    const Filling filling(held);
    const std::uint32_t count = readCount<Count>(in);
    for (std::uint32_t i = 0; i < count; ++i) {
      Row row{};
      codecOf(row).read(in);
      insert(std::move(row));
    }
  }
  void reset() const { held.clear(); }
  bool fits() const {
    return held.size() <= largestCount<Count>() &&
           std::all_of(held.begin(), held.end(), [](const auto& entry) { return fitsAlone(entry.second); });
  }
  void inspect(Field field, FieldVisitor& visitor, bool assign) const {
    field.type = FieldType::List;
    describeCount<Count>(field);
    std::vector<Row> rows;
    for (auto& entry : held) rows.push_back(entry.second);
    Elements<std::vector<Row>>{rows}.inspect(field, largestCount<Count>(), visitor, assign);
    if (!assign) return;
    const Filling filling(held);
    for (auto& row : rows) insert(std::move(row));
  }

 private:
  void insert(Row row) const {
    const auto rowKey = row.*key;
    if constexpr (requires { held.order(); })
      held.append({rowKey, std::move(row)});
    else
      held.insert({rowKey, std::move(row)});
  }
};

template <class Count, class M, class Key>
RowsCodec<Count, M, Key> rows(M& map, Key key) {
  return RowsCodec<Count, M, Key>(map, key);
}

/// An ordered map (std::map, FlatMap). A key that comes twice keeps its last value.
template <class Count, class M>
struct MapCodec : CodecBase {
  using Key = typename std::remove_const_t<M>::key_type;
  using Value = typename std::remove_const_t<M>::mapped_type;
  M& held;
  explicit MapCodec(M& map) : held(map) {}

  static constexpr std::size_t minSize() { return countSize<Count>(); }
  template <class Out>
  void write(Out& out) const {
    writeCount<Count>(out, held.size());
    for (auto& [key, value] : held) {
      codecOf(key).write(out);
      codecOf(value).write(out);
    }
  }
  template <class In>
  void read(In& in) const {
    const Filling filling(held);
    const std::uint32_t count = readCount<Count>(in);
    if constexpr (requires { held.reserve(count); }) {
      held.reserve(possibleElements(in, count, CodecOf<Key>::minSize() + CodecOf<Value>::minSize()));
    }
    for (std::uint32_t i = 0; i < count; ++i) {
      if constexpr (requires { held.appendSpare(); }) {
        auto& [key, value] = held.spare();
        codecOf(key).read(in);
        codecOf(value).read(in);
        held.appendSpare();
      } else {
        Key key{};
        Value value{};
        codecOf(key).read(in);
        codecOf(value).read(in);
        held.insert_or_assign(std::move(key), std::move(value));
      }
    }
  }
  void reset() const { held.clear(); }
  bool fits() const {
    return held.size() <= largestCount<Count>() && std::all_of(held.begin(), held.end(), [](const auto& entry) {
             return fitsAlone(entry.first) && fitsAlone(entry.second);
           });
  }
  void inspect(Field field, FieldVisitor& visitor, bool assign) const {
    field.type = FieldType::Map;
    describeCount<Count>(field);
    const std::size_t size = visitor.beginMap(field, held.size());
    if (assign && size > largestCount<Count>()) throw FieldValueError(field, "too many entries for their count");
    auto place = held.begin();
    std::vector<std::pair<Key, Value>> entries;
    for (std::size_t i = 0; i < size; ++i) {
      std::pair<Key, Value> entry{};
      if (!assign && place != held.end()) {
        entry = {place->first, place->second};
        ++place;
      }
      visitor.beginEntry();
      codecOf(entry.first).inspect({.name = "key"}, visitor, assign);
      codecOf(entry.second).inspect({.name = "value"}, visitor, assign);
      visitor.endEntry();
      if (assign) entries.push_back(std::move(entry));
    }
    visitor.endMap(field);
    if (!assign) return;
    held.clear();
    for (auto& [key, value] : entries) held[key] = std::move(value);
  }
};

template <class Count, class M>
MapCodec<Count, M> map(M& map) {
  return MapCodec<Count, M>(map);
}

// --- what an absent field is left as ---------------------------------------------------------------------------------

/// A field that is left as `value` where reading finds it absent, instead of at its type's default.
template <Codec Inner, class V>
struct OrElseCodec : Inner {
  V value;
  OrElseCodec(const Inner& inner, V absent) : Inner(inner), value(absent) {}
  void reset() const { this->held = value; }
};

template <class T, class V>
auto orElse(T&& value, V absent) {
  return OrElseCodec<std::remove_cvref_t<decltype(codecFor(value))>, V>(codecFor(value), absent);
}

// --- secrets ---------------------------------------------------------------------------------------------------------

/// A field that logs must not show and that wipeSecrets() overwrites in memory.
template <Codec Inner>
struct SecretCodec : Inner {
  explicit SecretCodec(const Inner& inner) : Inner(inner) {}
  void inspect(Field field, FieldVisitor& visitor, bool assign) const {
    field.secret = true;
    Inner::inspect(field, visitor, assign);
  }
};

template <class T>
auto secret(T&& value) {
  static_assert(
      requires { codecFor(value).wipe(); }, "only strings and raw bytes know how to be wiped");
  return SecretCodec<std::remove_cvref_t<decltype(codecFor(value))>>(codecFor(value));
}

template <class T>
constexpr bool isSecret = false;
template <class Inner>
constexpr bool isSecret<SecretCodec<Inner>> = true;

}  // namespace poker::wire
