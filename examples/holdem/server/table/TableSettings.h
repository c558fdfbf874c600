#pragma once

#include <CommandProcessor/types/ClientTableState.h>
#include <examples/holdem/game/Stakes.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace poker::holdem {

/// A house has no more tables: lists of all of them stay well below what a client and the queues to it take.
inline constexpr std::size_t kMostTables = 1000;
/// Bytes of a table's name.
inline constexpr std::size_t kLongestTableName = 40;

/// What a table plays, and its manners.
struct TableSettings {
  std::uint32_t gameID = 1;
  std::uint32_t tournamentID = 0;  ///< 0: a ring game
  std::string name = "Table 1";
  std::string password;   ///< empty: everybody may look
  std::size_t seats = 9;  ///< 2 to kMaxSeats
  Stakes stakes;
  RealMoneyType minBuyIn = RealMoneyType::fromUnits(40);
  RealMoneyType maxBuyIn = RealMoneyType::fromUnits(400);

  using Duration = std::chrono::milliseconds;
  Duration replyTime = std::chrono::seconds(20);    ///< for a turn
  Duration handPause = std::chrono::seconds(3);     ///< between hands
  Duration rebuyTime = std::chrono::seconds(15);    ///< that the table waits for a player whose stack is gone
  Duration keepSeat = std::chrono::seconds(300);    ///< for a player who is away or sits out
  Duration lastSitting = std::chrono::minutes(30);  ///< who comes back earlier brings what it left with

  std::size_t startWith = 2;    ///< players that the first hand waits for
  std::uint64_t mostHands = 0;  ///< the table closes after so many; 0: never
  bool takesScripts = false;    ///< whether clients may stack the deck; for tests
  std::optional<std::uint64_t>
      seed;  ///< repeatable cards, for tests and demonstrations; otherwise the system's randomness
};

/// Fills in what a table is, as it is told to clients.
void describe(const TableSettings& settings, BaseTableState& state);

}  // namespace poker::holdem
