#pragma once

#include <inspect/schema/Schema.h>

#include <string>
#include <string_view>

namespace poker::cmdproc {

/// A plugin in Lua that shows commands in Wireshark: Dissector.lua, and in it the table of all commands.
std::string dissectorText();

/// A class's or field's name as it stands in filters: "cl_move_me2_my_table" for ClMoveMe2MyTable.
std::string snakeCase(std::string_view name);

/// The field for filters over all commands that repeats a field's value; empty for a field that none repeats.
///
/// "money"    every amount.
/// "seat"     bytes whose name ends in "seat" or "seat id", the elements of a list of bytes called "seats", and the
///            keys of a map from bytes to amounts.
/// "game_id"  numbers of 16 and 32 bits whose name ends in "game", "table", "tour" or "tournament", also with "id"
///            behind it, and the elements of a list of them whose name ends in the plural of these.
///
/// @param container  the list or map that the field is the element or key of; null for a field of its own
std::string_view sharedFilter(const SchemaField& field, const SchemaField* container);

}  // namespace poker::cmdproc
