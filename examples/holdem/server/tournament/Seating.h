#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace poker::holdem {

/// Deals `players` (0, 1, ...) out to the fewest tables that have room for them, so that no table has two more than another.
/// @param seats   of a table, at least 2
/// @param random  equally likely numbers of 64 bits
/// @return the players of each table, in the order in which they are to be seated
std::vector<std::vector<std::size_t>> drawTables(std::size_t players, std::size_t seats,
                                                 const std::function<std::uint64_t()>& random);

/// A table of a tournament that is under way.
struct TableLoad {
  std::uint32_t table;  ///< its number
  std::size_t players;
  bool isIdle;  ///< between hands, so that players can go
};

/// The table that is to be broken next, whether it is idle or not: the one with the fewest players, of these the one with the
/// highest number. None when all tables are needed, and for the last one. When it is idle, each of its players goes to the
/// table that has the fewest then: there is room for all.
std::optional<std::uint32_t> tableToBreak(std::span<const TableLoad> tables, std::size_t seats);

struct PlayerMove {
  std::uint32_t from;
  std::uint32_t to;
};

/// The next move that makes the tables more even: from the idle table with the most players to the table with the fewest, if
/// it has two more at least. Of equal ones the lowest number. None when there is nothing to do now.
/// @param tables  without the one that is to be broken: nobody should move there
std::optional<PlayerMove> nextMove(std::span<const TableLoad> tables);

}  // namespace poker::holdem
