#pragma once

#include <CommandProcessor/types/TourNames.h>
#include <examples/holdem/server/table/TableSettings.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace poker::holdem {

/// A tournament takes no more players.
inline constexpr std::size_t kMostTourPlayers = 5000;

struct BlindLevel {
  RealMoneyType smallBlind;
  RealMoneyType bigBlind;
};

/// What a tournament is, as its host announces it.
struct TourSettings {
  using Duration = std::chrono::milliseconds;

  std::string name = "Tournament";
  std::string description;  ///< several lines with "\n" between them; may be empty
  LimitType limit = LimitType::NoLimit;
  std::size_t seats = 9;  ///< a table, 2 to kMaxSeats

  // Who may play.
  std::size_t minPlayers = 2;  ///< with fewer at its time it is called off; at least 2
  std::size_t maxPlayers = 90;
  std::string password;              ///< empty: everybody may register
  std::vector<std::string> invited;  ///< names; empty: everybody
  std::uint32_t mostWins = 0;        ///< who has won so many tournaments of the house may not; 0: everybody may

  // When it is played: from the start of the server. It has a time, a number of players, or both.
  Duration opensAfter{};                            ///< registration
  std::optional<Duration> startsAfter;              ///< none: when enough players have registered
  std::size_t startWith = 0;                        ///< it starts with so many players; 0: at its time alone
  Duration seatingTime = std::chrono::seconds(10);  ///< from the draw of the seats to the first hand

  // What it costs.
  RealMoneyType buyIn = RealMoneyType::fromUnits(10);
  RealMoneyType fee = RealMoneyType::fromUnits(1);
  RealMoneyType guaranteed;           ///< the prize fund, at least; zero: what is paid in
  std::vector<std::uint32_t> shares;  ///< of the places, of ten thousand; empty: usualShares()

  // Chips and blinds.
  RealMoneyType chips = RealMoneyType::fromUnits(1500);  ///< that everybody starts with
  std::vector<BlindLevel> levels;                        ///< at least one; the last one goes on
  TOUR_NAMES::SwitchType switchType = TOUR_NAMES::SwitchType::ByTime;
  std::uint32_t levelLength = 600;  ///< seconds or hands, above 0
  std::uint32_t breakEvery = 0;     ///< so many levels; 0: none
  Duration breakTime = std::chrono::minutes(5);

  // Re-buys, in the first levels; add-ons, once, in the break after these, or in the level after them if there is no break.
  std::uint32_t rebuys = 0;  ///< of a player at most; 0: none
  std::uint32_t rebuyLevels = 0;
  RealMoneyType rebuyPrice;
  RealMoneyType rebuyChips;
  RealMoneyType addOnPrice;
  RealMoneyType addOnChips;  ///< zero: no add-on

  // Manners of its tables.
  Duration replyTime = std::chrono::seconds(20);
  Duration handPause = std::chrono::seconds(3);
  Duration rebuyTime = std::chrono::seconds(15);   ///< that a table waits for a player whose chips are gone
  Duration absentTime = std::chrono::seconds(60);  ///< that it waits when nobody is there
  std::optional<std::uint64_t> seed;               ///< as TableSettings::seed

  TOUR_NAMES::TourType type() const {
    return maxPlayers <= seats ? TOUR_NAMES::TourType::SingleTable : TOUR_NAMES::TourType::MultiTable;
  }
};

}  // namespace poker::holdem
