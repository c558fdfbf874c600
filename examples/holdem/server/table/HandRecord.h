#pragma once

#include <examples/holdem/game/Hand.h>
#include <examples/holdem/server/table/Seats.h>
#include <examples/holdem/server/table/TableSettings.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace poker::holdem {

/// What the bank keeps of a hand, as JSON. It is written while the hand is played; all amounts are hundredths, all cards
/// are told, hidden ones too.
///
///     {"hand": 17, "game": 1, "table": "Table 1", "limit": "no-limit", "smallBlind": 100, "bigBlind": 200,
///      "began": 1795000000, "button": 3, "board": "A♥ K♦ 2♣ 9♠ 9♥", "rake": 150, "pots": [2850],
///      "players": [{"seat": 1, "name": "Ann", "stack": 20000, "cards": "A♠ A♦", "shown": true, "won": 2850}, ...],
///      "actions": [{"street": 0, "seat": 1, "action": 16384, "amount": 100}, ...]}
///
/// Actions carry the codes of UserAction; NoAction gives an uncalled amount back. Streets count from 0.
class HandRecord {
 public:
  /// Forgets the last hand.
  void begin(std::uint64_t number);
  void add(Street street, const SeatID& seat, UserAction action, const RealMoneyType& amount) {
    actions_.push_back({street, seat, action, amount});
  }
  std::uint64_t number() const { return number_; }
  std::size_t count(Street street, UserAction action) const {
    return static_cast<std::size_t>(std::count_if(actions_.begin(), actions_.end(), [&](const Action& each) {
      return each.street == street && each.action == action;
    }));
  }
  /// Of a hand that is over.
  std::string toJson(const TableSettings& table, const Hand& hand, Seats& seats) const;

 private:
  struct Action {
    Street street;
    SeatID seat;
    UserAction action;
    RealMoneyType amount;
  };

  std::uint64_t number_ = 0;
  std::chrono::system_clock::time_point began_;
  std::vector<Action> actions_;
};

}  // namespace poker::holdem
