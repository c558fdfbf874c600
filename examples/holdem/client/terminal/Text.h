#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

namespace poker::holdem {

/// What somebody else wrote, fit for a terminal: what is outside 0x20 to 0x7E, quotes and backslashes are escaped.
std::string escaped(std::string_view text);
/// How many columns our own text takes: UTF-8 with one column a character, colours with none.
std::size_t columnsOf(std::string_view text);
/// The columns of a terminal; of anything else as many as one likes.
std::size_t widthOf(std::FILE* stream);

}  // namespace poker::holdem
