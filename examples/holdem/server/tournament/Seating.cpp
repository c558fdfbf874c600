#include <examples/holdem/game/Deck.h>
#include <examples/holdem/server/tournament/Seating.h>

#include <numeric>
#include <utility>

namespace poker::holdem {

namespace {

/// The function as the standard library's kind of generator.
struct Bits {
  using result_type = std::uint64_t;
  static constexpr result_type min() { return 0; }
  static constexpr result_type max() { return UINT64_MAX; }
  result_type operator()() { return random(); }

  const std::function<std::uint64_t()>& random;
};

/// @param seats  of a table
std::size_t tablesFor(std::size_t players, std::size_t seats) { return (players + seats - 1) / seats; }

}  // namespace

std::vector<std::vector<std::size_t>> drawTables(std::size_t players, std::size_t seats,
                                                 const std::function<std::uint64_t()>& random) {
  std::vector<std::size_t> order(players);
  std::iota(order.begin(), order.end(), std::size_t{0});
  Bits bits{random};
  for (std::size_t left = players; left > 1; --left) {
    std::swap(order[left - 1], order[static_cast<std::size_t>(drawBelow(bits, left))]);
  }
  std::vector<std::vector<std::size_t>> tables(tablesFor(players, seats));
  for (std::size_t i = 0; i < players; ++i) tables[i % tables.size()].push_back(order[i]);
  return tables;
}

std::optional<std::uint32_t> tableToBreak(std::span<const TableLoad> tables, std::size_t seats) {
  std::size_t players = 0;
  const TableLoad* smallest = nullptr;
  for (const TableLoad& table : tables) {
    players += table.players;
    if (smallest == nullptr || table.players < smallest->players ||
        (table.players == smallest->players && table.table > smallest->table)) {
      smallest = &table;
    }
  }
  if (tables.size() < 2 || tables.size() <= tablesFor(players, seats)) return std::nullopt;
  return smallest->table;
}

std::optional<PlayerMove> nextMove(std::span<const TableLoad> tables) {
  const TableLoad* from = nullptr;
  const TableLoad* to = nullptr;
  for (const TableLoad& table : tables) {
    if (to == nullptr || table.players < to->players || (table.players == to->players && table.table < to->table)) {
      to = &table;
    }
    if (!table.isIdle) continue;
    if (from == nullptr || table.players > from->players ||
        (table.players == from->players && table.table < from->table)) {
      from = &table;
    }
  }
  if (from == nullptr || from->players < to->players + 2) return std::nullopt;
  return PlayerMove{from->table, to->table};
}

}  // namespace poker::holdem
