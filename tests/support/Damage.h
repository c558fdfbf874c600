#pragma once

// Damaged forms of a message, for whatever has to survive them. Needs the standard library alone.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <vector>

namespace poker::test {

/// How far the damage goes.
struct DamageExtent {
  /// So many bytes at the front stay as they are (a length slot, the two bytes that name the class).
  std::size_t keep = 0;
  /// A message with more places than this is damaged at its first and last ones and, between them, at a seeded choice.
  std::size_t places = 256;
  /// How many of its 256 values each byte takes: all, or a seeded choice.
  std::size_t values = 256;
  std::uint64_t seed = 1;
};

/// What a window of so many bytes is overwritten with: the edges of signed and unsigned numbers, and counts that end at,
/// just before and just behind the end of the message.
inline std::array<std::uint64_t, 8> edgesOf(std::size_t width, std::size_t remaining) {
  const std::uint64_t all = ~std::uint64_t{0} >> (64 - 8 * width), sign = all ^ (all >> 1);
  return {0, 1, sign - 1, sign, all, std::uint64_t{remaining} - 1, remaining, std::uint64_t{remaining} + 1};
}

/// Overwrites a window with a number, little-endian.
inline void overwrite(std::span<std::uint8_t> window, std::uint64_t value) {
  for (std::uint8_t& byte : window) {
    byte = static_cast<std::uint8_t>(value);
    value >>= 8;
  }
}

/// The places of a message that are damaged, ascending.
inline std::vector<std::size_t> placesOf(std::size_t size, const DamageExtent& extent) {
  std::vector<std::size_t> places;
  const std::size_t all = size > extent.keep ? size - extent.keep : 0;
  if (all <= extent.places) {
    for (std::size_t place = extent.keep; place < size; ++place) places.push_back(place);
    return places;
  }
  std::mt19937_64 random(extent.seed);
  const std::size_t edge = extent.places / 4;
  for (std::size_t i = 0; i < extent.places; ++i) {
    places.push_back(i < edge       ? extent.keep + i
                     : i < 2 * edge ? size - 1 - (i - edge)
                                    : extent.keep + static_cast<std::size_t>(random() % all));
  }
  std::sort(places.begin(), places.end());
  places.erase(std::unique(places.begin(), places.end()), places.end());
  return places;
}

/// Every prefix, every byte through its values, and every window of 1, 2, 4 and 8 bytes through its edges.
/// @param take  called with each damaged message, whose bytes are valid during the call
template <class Take>
void forEachDamage(std::span<const std::uint8_t> message, const Take& take, const DamageExtent& extent = {}) {
  std::mt19937_64 random(extent.seed);
  std::vector<std::uint8_t> damaged(message.begin(), message.end());
  for (const std::size_t place : placesOf(message.size(), extent)) {
    take(message.first(place));
    for (std::size_t i = 0; i < std::min<std::size_t>(extent.values, 256); ++i) {
      damaged[place] = static_cast<std::uint8_t>(extent.values < 256 ? random() : i);
      take(std::span<const std::uint8_t>(damaged));
    }
    damaged[place] = message[place];
    for (const std::size_t width : {1u, 2u, 4u, 8u}) {
      if (width > message.size() - place) break;
      const auto window = std::span(damaged).subspan(place, width);
      for (const std::uint64_t edge : edgesOf(width, message.size() - place - width)) {
        overwrite(window, edge);
        take(std::span<const std::uint8_t>(damaged));
      }
      std::copy_n(message.begin() + static_cast<std::ptrdiff_t>(place), width, window.begin());
    }
  }
}

/// Endless seeded damage of several kinds at once: bytes, bits, windows, cuts, blocks taken out, doubled, brought in from
/// the message before and exchanged. The same seed and messages give the same damage.
class Damager {
 public:
  /// @param keep  so many bytes at the front stay as they are
  explicit Damager(std::uint64_t seed, std::size_t keep = 0) : random_(seed), keep_(keep) {}

  /// The message, damaged in one to four ways; valid until the next call.
  std::span<const std::uint8_t> next(std::span<const std::uint8_t> message) {
    damaged_.assign(message.begin(), message.end());
    for (std::size_t left = 1 + below(4); left != 0 && damaged_.size() > keep_; --left) damageOnce();
    last_.assign(message.begin(), message.end());
    return damaged_;
  }

 private:
  std::size_t below(std::size_t bound) { return static_cast<std::size_t>(random_() % bound); }
  std::size_t place() { return keep_ + below(damaged_.size() - keep_); }
  std::vector<std::uint8_t>::iterator at(std::size_t place) {
    return damaged_.begin() + static_cast<std::ptrdiff_t>(place);
  }
  /// Bytes from the place on, mostly few.
  std::size_t length(std::size_t place, std::size_t size) { return 1 + below(std::min<std::size_t>(size - place, 16)); }

  void damageOnce() {
    const std::size_t where = place();
    switch (below(8)) {
      case 0:
        damaged_[where] = static_cast<std::uint8_t>(random_());
        break;
      case 1:
        damaged_[where] = static_cast<std::uint8_t>(damaged_[where] ^ 1u << below(8));
        break;
      case 2:
      case 3: {
        const std::size_t width = std::min<std::size_t>(damaged_.size() - where, std::size_t{1} << below(4));
        const auto edges = edgesOf(width, damaged_.size() - where - width);
        overwrite(std::span(damaged_).subspan(where, width), edges[below(edges.size())]);
        break;
      }
      case 4:
        damaged_.resize(where);
        break;
      case 5:
        damaged_.erase(at(where), at(where + length(where, damaged_.size())));
        break;
      case 6: {  // a block once more, or one of the last message
        const std::vector<std::uint8_t>& from = last_.empty() || below(2) == 0 ? damaged_ : last_;
        const std::size_t first = below(from.size());
        const std::vector<std::uint8_t> block(
            from.begin() + static_cast<std::ptrdiff_t>(first),
            from.begin() + static_cast<std::ptrdiff_t>(first + length(first, from.size())));
        damaged_.insert(at(where), block.begin(), block.end());
        break;
      }
      default:
        std::swap(damaged_[where], damaged_[place()]);
    }
  }

  std::mt19937_64 random_;
  std::size_t keep_;
  std::vector<std::uint8_t> damaged_, last_;
};

}  // namespace poker::test
