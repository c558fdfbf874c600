#pragma once

// What the flat containers share: putting elements in order that arrived in any order.

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

namespace poker::detail {

/// A number whose order is that of the keys, as far as it tells them apart: a text's first four bytes.
template <class Key>
std::uint32_t leadOf(const Key& key) {
  if constexpr (std::convertible_to<const Key&, std::string_view>) {
    const std::string_view text = key;
    std::uint32_t lead = 0;
    for (std::size_t i = 0; i < 4; ++i) lead = lead << 8 | (i < text.size() ? static_cast<std::uint8_t>(text[i]) : 0u);
    return lead;
  } else {
    return 0;
  }
}

/// Sorts by key; equal ones keep their order. Needs 8 bytes an element, but none for a few; without memory it takes its
/// time.
template <class Iterator, class KeyOf>
void sortByKey(Iterator first, Iterator last, KeyOf keyOf) {
  const auto size = static_cast<std::size_t>(last - first);
  // For each place the number of the element that belongs there, behind its key's lead: cheaper to move about.
  std::unique_ptr<std::uint64_t[]> order;
  if (size > 16 && size <= UINT32_MAX) order.reset(new (std::nothrow) std::uint64_t[size]);
  if (order == nullptr) {
    const auto less = [&](const auto& a, const auto& b) { return keyOf(a) < keyOf(b); };
    for (Iterator i = first; i != last; ++i) std::rotate(std::upper_bound(first, i, *i, less), i, i + 1);
    return;
  }
  const auto number = [](std::uint64_t entry) { return static_cast<std::uint32_t>(entry); };
  const auto at = [&](std::size_t i) -> auto& { return first[static_cast<std::ptrdiff_t>(i)]; };
  for (std::size_t i = 0; i < size; ++i) order[i] = std::uint64_t{leadOf(keyOf(at(i)))} << 32 | i;
  std::sort(order.get(), order.get() + size, [&](std::uint64_t a, std::uint64_t b) {
    if (a >> 32 != b >> 32) return a < b;
    const auto& keyA = keyOf(at(number(a)));
    const auto& keyB = keyOf(at(number(b)));
    return keyA < keyB || (!(keyB < keyA) && a < b);
  });
  for (std::size_t start = 0; start < size; ++start) {
    std::size_t place = start;
    while (number(order[place]) != start) {
      const std::size_t next = number(order[place]);
      std::swap(at(place), at(next));
      order[place] = place;
      place = next;
    }
    order[place] = place;
  }
}

/// Moves the elements whose key is that of the one before them behind the others, where they keep their memory.
/// @param merge  called with an element that stays and one of the same key that does not
/// @return behind those that stay
template <class Iterator, class KeyOf, class Merge>
Iterator dropTies(Iterator first, Iterator last, KeyOf keyOf, Merge merge) {
  if (first == last) return last;
  Iterator stays = first;
  for (Iterator i = first + 1; i != last; ++i) {
    if (!(keyOf(*stays) < keyOf(*i))) {
      merge(*stays, *i);
    } else if (++stays != i) {
      std::swap(*stays, *i);
    }
  }
  return stays + 1;
}

}  // namespace poker::detail
