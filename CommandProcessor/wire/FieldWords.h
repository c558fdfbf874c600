#pragma once

// The words of a field list, declared only, so that classes can state their fields in light headers; what the words mean
// on the wire is in FieldCodecs.h, which the sources include.
//
// A field list names values as they are where the wire mirrors what is held, and wraps them where it does not:
//
//     as<W>(x)           a number that travels as a W
//     list<C>(v)         a count of type C, then the elements
//     counted<C>(v)      a list whose count stands elsewhere
//     map<C>(m)          a count, then keys and values in key order
//     rows<C>(m, k)      a multimap of rows that hold their key
//     bytes<C>(v)        a size of type C, then raw bytes
//     text<N>(s)         a string of at most N characters
//     flags(bit<2>("chatEnabled", b), bits<0xF0>("showBoxes", c))     one byte that holds several bools
//     dateTimeStatus(t)  a date-time together with its status (12 bytes)
//     secret(x)          x, which logs must not show
//     orElse(x, v)       x, which reading leaves as v when it is absent
//
// C is the count's type on the wire:
//
//     an unsigned type   as many as it tells
//     std::int32_t       the same; a negative count fails as one that is too large
//     BelowOneIsNone     signed 32 bits; below 1 nothing follows
//     Capped<T>          unsigned 32 bits; more than T::kMostElements fails with T::kTooManyElements
//
// A count that comes from the wire is believed only as far as the bytes that are left can carry it.
//
// Words that concern several fields belong to the archive that runs over the list:
//
//     field.zeros(n)                            n bytes of zero, skipped unseen when read
//     field.local(x)                            held but never sent: a reader clears it
//     field.when("mask has 0x100", c, part)     fields that travel only when c holds
//     field.present("present", c, part)         a bool that says whether the fields behind it follow
//     field.unless("empty", c, part)            a bool that says that nothing follows
//
// `part` takes the archive and names its fields as a list does: [&](auto& part) { part("game", self.game_); }. Reading
// leaves absent fields at their types' defaults, or as orElse() says, so that nothing of an object's earlier life stays.

#include <CommandProcessor/wire/FieldAccess.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace poker::wire {

struct BelowOneIsNone;
template <class T>
struct Capped;

template <class W, class T>
struct NumberCodec;
template <class T>
struct DateTimeStatusCodec;
template <std::size_t N, class T>
struct TextCodec;
template <class Count, class C>
struct ListCodec;
template <class Count, class C>
class CountedCodec;
template <class Count, class M, class Key>
struct RowsCodec;
template <class Count, class M>
struct MapCodec;
template <class Count, class T>
struct BytesCodec;
template <std::uint8_t Mask, class T>
struct FlagBits;
template <class... Bits>
struct FlagsCodec;

template <class W, class T>
NumberCodec<W, T> as(T& number);
template <class T>
DateTimeStatusCodec<T> dateTimeStatus(T& dateTime);
template <std::size_t N, class T>
TextCodec<N, T> text(T& string);
template <class Count, class C>
ListCodec<Count, C> list(C& items);
template <class Count, class C>
CountedCodec<Count, C> counted(C& items);
template <class Count, class M, class Key>
RowsCodec<Count, M, Key> rows(M& multimap, Key keyMember);
template <class Count, class M>
MapCodec<Count, M> map(M& map);
template <class Count, class T>
BytesCodec<Count, T> bytes(T& bytes);
template <unsigned Bit, class T>
FlagBits<static_cast<std::uint8_t>(1u << Bit), T> bit(std::string_view name, T& flag);
template <std::uint8_t Mask, class T>
FlagBits<Mask, T> bits(std::string_view name, T& flag);
template <class... Bits>
FlagsCodec<Bits...> flags(Bits... bits);
template <class T, class V>
auto orElse(T&& value, V absent);
template <class T>
auto secret(T&& value);

}  // namespace poker::wire
