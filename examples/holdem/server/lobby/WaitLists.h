#pragma once

#include <CommandProcessor/commands/AllCommands.h>
#include <examples/holdem/game/Deck.h>
#include <examples/holdem/server/Outbox.h>
#include <examples/holdem/server/table/RingTable.h>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace poker::holdem {

/// Who waits for a seat, and who is invited to one: a queue for each table, and one of players who take any table that fits
/// a description. A free seat goes to whoever joined first of those whom it suits; it is held for that player until the
/// invitation is accepted, refused or too old.
///
/// A client is known by its connection: what it waits for ends with that. Everything that is said goes to the outbox. All
/// calls come from the thread of the io_context.
class WaitLists {
 public:
  /// A client may wait for so many tables at once, and with one description beside them.
  static constexpr std::size_t kMostTables = 5;
  /// No queue is longer.
  static constexpr std::size_t kLongestQueue = 500;
  /// Stands for the queue of descriptions where a table's number is expected.
  static constexpr std::uint32_t kAnyTable = 0;

  struct Description {
    GameType game = GameType::None;  ///< None: any
    RealMoneyType lowBet;            ///< bounds of the big blind, or of the bet of the late rounds in fixed limit ...
    RealMoneyType highBet;
    int minPlayers = 0;  ///< ... and of the number of players that sit there; 0: no bound, each of the four
    int maxPlayers = 0;
    bool realMoney = false;
  };
  using Tables = std::vector<std::unique_ptr<RingTable>>;

  /// @param tables      all of the house
  /// @param inviteTime  that a seat is held
  /// All references must outlive this object.
  WaitLists(asio::io_context& context, const Tables& tables, Outbox& outbox, std::chrono::milliseconds inviteTime);

  // What clients send; each is answered.

  void waitForTable(const ConnectionID& client, const Account& account, std::uint32_t gameID);
  void waitForAny(const ConnectionID& client, const Account& account, const Description& wanted);
  /// @param gameID  or kAnyTable
  void stopWaiting(const ConnectionID& client, std::uint32_t gameID);
  void reject(const ConnectionID& client, std::uint32_t gameID, const std::string& reservation);

  struct Invitation {
    std::string id;  ///< 32 random digits
    ConnectionID client;
    RingTable* table;
    SeatID seat;
    Clock::time_point until;
  };
  /// The client's invitation to that table; null when there is none of this id.
  const Invitation* find(const ConnectionID& client, std::uint32_t gameID, const std::string& reservation) const;

  /// The client sits down, or is gone: it waits nowhere any more, and no seat is held for it. It is told nothing.
  void forget(const ConnectionID& client);
  /// Seats have changed at a table, or it is closed.
  void noteChange(RingTable& table);
  /// Gives out the seats that have become free. To be called at the end of every event.
  void settle();

  std::size_t length(std::uint32_t gameID) const;
  /// Calls `f(name)` for each player who waits for the table, the next one first.
  template <class F>
  void forEachWaiting(std::uint32_t gameID, F&& f) const {
    const auto queue = queues_.find(gameID);
    if (queue == queues_.end()) return;
    for (const Waiter& waiter : queue->second) f(waiter.account.name);
  }
  /// Another number whenever a queue has changed.
  std::uint64_t changes() const { return changes_; }

 private:
  struct Waiter {
    ConnectionID client;
    Account account;
    std::uint64_t joined;  // one row of numbers for all queues
    Description wanted;    // in the queue of descriptions
  };
  using Queue = std::deque<Waiter>;
  using Invitations = std::vector<Invitation>;

  bool mayWait(const ConnectionID& client, const Account& account, std::uint32_t gameID) const;
  void join(const ConnectionID& client, const Account& account, std::uint32_t gameID, const Description& wanted);
  template <class Which>
  std::size_t leaveQueue(std::uint32_t gameID, Which&& which);
  void leaveQueues(const ConnectionID& client);
  void lookAgainAt(RingTable& table);
  void serve(RingTable& table);
  const Waiter* nextFor(RingTable& table) const;
  void invite(RingTable& table, const SeatID& seat, const Waiter& waiter);
  void endInvitation(Invitations::iterator invitation);
  void dismiss(const RingTable& table);
  void dismissTheHopeless();
  void armTimer();

  const Tables& tables_;
  Outbox& outbox_;
  std::chrono::milliseconds inviteTime_;
  SystemRandom random_;
  std::map<std::uint32_t, Queue> queues_;  // none is empty
  Invitations invitations_;                // oldest first
  asio::steady_timer timer_;
  Clock::time_point timerFor_ = Clock::time_point::max();  // never
  std::uint64_t joined_ = 0;
  std::uint64_t changes_ = 0;
  std::vector<RingTable*> due_;  // tables to look at when the event ends
};

}  // namespace poker::holdem
