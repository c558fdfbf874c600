#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace poker::holdem {

/// What somebody else wrote, fit for a terminal: what is outside 0x20 to 0x7E, quotes and backslashes are escaped.
std::string escaped(std::string_view text);
/// The same for a text of several lines, which it stays; quotes and backslashes stand as they are.
std::string escapedLines(std::string_view text);
/// No more of an escaped text than so many columns, without half an escape; dots tell that there was more.
std::string shortened(std::string text, std::size_t columns);
/// "1 hand", "2 hands".
std::string counted(std::uint64_t number, std::string_view what);
/// Adds what somebody else wrote in lines of their own, with what it is about before the first.
void addForeign(std::vector<std::string>& lines, std::string_view about, std::string_view text);
/// How many columns our own text takes: UTF-8 with one column a character, colours with none.
std::size_t columnsOf(std::string_view text);
/// The columns of a terminal; of anything else as many as one likes.
std::size_t widthOf(std::FILE* stream);

}  // namespace poker::holdem
