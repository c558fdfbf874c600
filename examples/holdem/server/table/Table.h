#pragma once

#include <CommandProcessor/commands/AllCommands.h>
#include <examples/holdem/server/table/Audience.h>
#include <examples/holdem/server/table/Dealer.h>
#include <examples/holdem/server/table/Seats.h>
#include <examples/holdem/server/table/TableSettings.h>
#include <examples/holdem/server/table/TableStatistics.h>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <variant>
#include <vector>

namespace poker::holdem {

class Table;

/// What a table needs of the server around it.
class TableHost {
 public:
  virtual ~TableHost() = default;

  /// Numbers hands through all tables.
  virtual std::uint64_t nextHandNumber() = 0;
  /// A hand is over, and viewers have not heard of it yet: the host writes it to the bank.
  /// @param booking  its players are those of `hand`, in the same order
  virtual void finishHand(const FinishedHand& booking, const Hand& hand) = 0;
  /// A connection speaks for a seat now, or for none any more.
  virtual void onSeated(const ConnectionID& connection, bool seated) = 0;
  virtual void onHandOver(std::uint32_t gameID, std::uint64_t handsPlayed) = 0;
  /// The table has been closed and the last hand is over.
  virtual void onTableClosed() = 0;

  // Come maybe in the middle of a change, several times in one event: the table may be looked at when the event ends.

  /// Table::changes() is another number than before.
  virtual void onTableChanged() = 0;
  /// A seat has been taken or given up, or nobody may sit down there any more.
  virtual void onSeatsChanged(Table& table) = 0;
};

/// A table: who sits there with how much, who looks on, and when the next hand begins. Everything that it says goes to the
/// outbox. All calls come from the thread of the io_context; what the bank throws passes through and ends the program, for
/// the bank alone then knows what is true.
class Table final : private DealerHost {
 public:
  /// Players whom the bank knows to sit here have their seats again, without a connection. All references must outlive
  /// the table.
  Table(asio::io_context& context, TableSettings settings, Bank& bank, Outbox& outbox, TableHost& host);

  const TableSettings& settings() const { return settings_; }
  const Dealer::Turns& turns() const { return dealer_.turns(); }
  std::uint64_t handsPlayed() const { return handsPlayed_; }
  bool isIdle() const { return !dealer_.isPlaying(); }
  /// All hands that it was to play are played (TableSettings::mostHands): no other one will follow.
  bool isPlayedOut() const { return settings_.mostHands != 0 && handsPlayed_ >= settings_.mostHands; }
  const ConnectionsSet& viewers() const { return audience_.viewers(); }
  /// No more hands, but for the one that is played.
  bool isClosed() const { return closed_; }
  /// Another number whenever something may have changed that is seen from outside: seats, chips, hands, who looks on.
  std::uint64_t changes() const { return changes_; }
  const TableStatistics& statistics() const { return statistics_; }
  std::size_t players() const { return seats_.taken(); }
  /// Those who look at the table without a seat there.
  std::size_t observers() const { return audience_.observers(); }
  /// 0 between hands.
  std::uint64_t handNumber() const { return dealer_.isPlaying() ? dealer_.record().number() : 0; }
  /// Which seat an account has; none when it has none here.
  SeatID seatOf(AccountID account);
  /// Calls `f(seat, name, stack, bet, state)` for each seat that is taken or held, in ascending order.
  template <class F>
  void forEachSeat(F&& f) {
    for (SeatID::value_type i = 0; i < kMaxSeats; ++i) {
      const SeatID id(i);
      if (const Seat* seat = seats_.find(id)) {
        const HandPlayer* player = dealer_.playerOf(id);
        f(id, seat->name, dealer_.stackOf(*seat), player != nullptr ? player->bet : kZeroMoney, dealer_.stateOf(*seat));
      } else if (const auto held = held_.find(id); held != held_.end()) {
        f(id, held->second.name, kZeroMoney, kZeroMoney, UserState::Reserved);
      }
    }
  }

  /// A seat that is neither taken nor held; none when there is none, or the table is closed.
  SeatID freeSeat();
  /// Keeps a free seat for a player; all others find it taken.
  void hold(const SeatID& seat, const Account& account);
  /// Ends that, if the seat is still held.
  void release(const SeatID& seat);

  /// Somebody looks at the table from now on: gets its state. A player of the table speaks for the own seat again.
  void enter(const ConnectionID& viewer, AccountID account);
  /// The viewer looks elsewhere, or its connection is gone.
  void leave(const ConnectionID& viewer);
  /// No more hands; the one that is played goes to its end.
  void close();

  // What viewers send; from those who may not send it, it is passed over or refused.

  void sitDown(const ConnectionID& viewer, const Account& account, const SeatID& seat, const RealMoneyType& money);
  void leaveSeat(const ConnectionID& viewer);
  void comeBack(const ConnectionID& viewer);
  void tellMoney(const ConnectionID& viewer, AccountID account);
  void bringMore(const ConnectionID& viewer, const RealMoneyType& amount);
  void act(const ConnectionID& viewer, UserAction action, const RealMoneyType& amount);
  void acknowledgeTurn(const ConnectionID& viewer);
  void choose(const ConnectionID& viewer, std::uint32_t actions, const RealMoneyType& amount, bool on);
  void chat(const ConnectionID& viewer, const std::string& name, const std::string& text,
            ChatMsgTypes::ChatStyle style);
  /// Fixes the next hand: the button, the players that it waits for, the cards in the order in which they are dealt.
  /// @return whether the cards can be had
  bool script(const SeatID& button, unsigned players, const std::string& cards);

 private:
  struct Script {
    SeatID button;
    std::size_t players;
    std::vector<Card> cards;
  };
  struct LastSitting {
    RealMoneyType stack;
    Clock::time_point until;
  };
  void changed();
  void countHand(const Hand& hand);
  Seat* seatOf(const ConnectionID& viewer);
  RealMoneyType lastStack(AccountID account) const;
  ClientTableState stateFor(const SeatID& viewer);
  std::optional<SrvErrorCode> whyNotSit(const Account& account, const SeatID& seat, const RealMoneyType& money);
  std::optional<SrvErrorCode> whyNotMore(const Seat& seat, const RealMoneyType& amount);
  bool isReady(const Seat& seat) const;
  bool mayBegin();
  void onHandOver() override;
  void onTimePlayed() override { afterChange(); }
  void afterChange();
  void afterHand();
  void standUp(Seat& seat);
  void addChips(Seat& seat, const RealMoneyType& amount);
  void tellMoneyOf(const ConnectionID& viewer, AccountID account, const Seat* seat);
  void announceChanges();
  void tidySeats();
  void scheduleHand();
  void beginHand();
  void armSeatTimer();
  std::uint64_t draw();

  TableSettings settings_;
  Bank& bank_;
  TableHost& host_;
  Audience audience_;
  Seats seats_;
  std::map<SeatID, HeldSeat> held_;
  Dealer dealer_;
  Blinds blinds_;
  Deck deck_;
  std::variant<SystemRandom, std::mt19937_64> random_;
  std::optional<Script> script_;
  std::map<AccountID, LastSitting> lastSittings_;
  asio::steady_timer handTimer_;
  asio::steady_timer seatTimer_;
  Clock::time_point seatTimerFor_ = Clock::time_point::max();  // never
  bool handScheduled_ = false;
  bool handJustOver_ = false;
  bool closed_ = false;
  bool closeTold_ = false;
  std::uint64_t handsPlayed_ = 0;
  std::uint64_t changes_ = 0;
  Clock::time_point handBegan_;
  TableStatistics statistics_;
  FinishedHand booking_;
};

}  // namespace poker::holdem
