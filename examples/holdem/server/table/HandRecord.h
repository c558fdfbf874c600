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
///     {"hand": 17, "game": 1, "table": "Table 1", "seats": 9, "limit": "no-limit", "smallBlind": 100, "bigBlind": 200,
///      "began": 1795000000, "ended": 1795000042, "button": 3, "board": "A♥ K♦ 2♣ 9♠ 9♥", "rake": 150, "pots": [2850],
///      "players": [{"seat": 1, "name": "Ann", "stack": 20000, "cards": "A♠ A♦", "shown": true, "won": 2850}, ...],
///      "actions": [{"street": 0, "seat": 1, "action": 16384, "amount": 100},
///                  {"street": 0, "seat": 5, "action": 512, "amount": 300, "dead": 100}, ...],
///      "finalists": [2, 1], "wins": [{"pot": 0, "seat": 1, "amount": 2850}]}
///
/// Actions carry the codes of UserAction; NoAction gives an uncalled amount back. A Post tells what of it was dead. Streets
/// count from 0. Finalists are those who were in to the end, the first one to show first. A hand of a tournament has
/// "tournament", its number, too. Records of the first version of the bank have no seats, ended, dead, finalists and wins.
class HandRecord {
 public:
  /// Forgets the last hand.
  void begin(std::uint64_t number);
  /// The hand is over now.
  void end() { ended_ = std::max(began_, std::chrono::system_clock::now()); }  // the clock may have been put back
  /// @param dead  of a Post
  void add(Street street, const SeatID& seat, UserAction action, const RealMoneyType& amount,
           const RealMoneyType& dead = kZeroMoney) {
    actions_.push_back({street, seat, action, amount, dead});
  }
  std::uint64_t number() const { return number_; }
  std::size_t count(Street street, UserAction action) const {
    return static_cast<std::size_t>(std::count_if(actions_.begin(), actions_.end(), [&](const Action& each) {
      return each.street == street && each.action == action;
    }));
  }
  std::chrono::sys_seconds began() const { return std::chrono::floor<std::chrono::seconds>(began_); }
  std::chrono::sys_seconds ended() const { return std::chrono::floor<std::chrono::seconds>(ended_); }
  /// Of a hand that is over.
  std::string toJson(const TableSettings& table, const Hand& hand, Seats& seats) const;

 private:
  struct Action {
    Street street;
    SeatID seat;
    UserAction action;
    RealMoneyType amount;
    RealMoneyType dead;
  };

  std::uint64_t number_ = 0;
  std::chrono::system_clock::time_point began_;
  std::chrono::system_clock::time_point ended_;
  std::vector<Action> actions_;
};

}  // namespace poker::holdem
