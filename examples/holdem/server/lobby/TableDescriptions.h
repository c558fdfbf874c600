#pragma once

#include <CommandProcessor/types/ServerTableEntry.h>
#include <CommandProcessor/types/TableInfoDetailed.h>
#include <examples/holdem/server/lobby/WaitLists.h>
#include <examples/holdem/server/table/RingTable.h>

namespace poker::holdem {

// How a table looks from the lobby. All fields but the versions, which are left as they are, are filled in.

void describe(RingTable& table, const WaitLists& waiting, ServerTableEntry& line);
/// What players have at a private table is not told: only who has the password may look there.
void describe(RingTable& table, const WaitLists& waiting, TableInfoDetailed& details);
/// The versions aside, for two descriptions of one table.
bool saySame(const TableInfoDetailed& a, const TableInfoDetailed& b);

}  // namespace poker::holdem
