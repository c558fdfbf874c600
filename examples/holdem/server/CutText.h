#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <string>
#include <string_view>

namespace poker::holdem {

/// No more than so many bytes of a text, and no part of a UTF-8 character at its end. Otherwise any bytes pass.
inline std::string cutTo(std::size_t most, std::string_view text) {
  std::string_view kept = text.substr(0, most);
  constexpr std::size_t kLongestCharacter = 4;
  for (std::size_t back = 1; back <= std::min(kLongestCharacter, kept.size()); ++back) {
    const auto byte = static_cast<unsigned char>(kept[kept.size() - back]);
    if ((byte & 0xC0) == 0x80) continue;  // not a character's first byte
    // Such a byte begins with as many ones as the character has bytes, or with none.
    if (static_cast<std::size_t>(std::countl_one(byte)) > back) kept.remove_suffix(back);
    break;
  }
  return std::string(kept);
}

}  // namespace poker::holdem
