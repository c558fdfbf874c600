#pragma once

#include <CommandProcessor/commands/AllCommands.h>
#include <examples/holdem/server/table/Audience.h>
#include <examples/holdem/server/table/Dealer.h>
#include <examples/holdem/server/table/Seats.h>
#include <examples/holdem/server/table/TableSettings.h>
#include <examples/holdem/server/table/TableStatistics.h>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <variant>
#include <vector>

namespace poker::holdem {

/// What every table needs of the server around it.
class TableHost {
 public:
  virtual ~TableHost() = default;

  /// Numbers hands through all tables.
  virtual std::uint64_t nextHandNumber() = 0;
  /// A connection speaks for a seat now, or for none any more.
  virtual void onSeated(const ConnectionID& connection, bool seated) = 0;
  /// Table::changes() is another number than before. Comes maybe in the middle of a change, several times in one event:
  /// the table may be looked at when the event ends.
  virtual void onTableChanged() = 0;
};

/// A table: who sits there with how much, who looks on, and the hands that are played. Who gets a seat, when a hand may
/// begin and where its chips are booked, is for those who derive from it. Everything that it says goes to the outbox. All
/// calls come from the thread of the io_context; what the bank throws passes through and ends the program, for the bank
/// alone then knows what is true.
class Table : private DealerHost {
 public:
  const TableSettings& settings() const { return settings_; }
  const Dealer::Turns& turns() const { return dealer_.turns(); }
  std::uint64_t handsPlayed() const { return handsPlayed_; }
  bool isIdle() const { return !dealer_.isPlaying(); }
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
  /// As above, but from the hand's first word to the viewers to the last one.
  std::uint64_t handTold() const { return dealer_.handTold(); }
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
      } else if (const HeldSeat* held = seats_.findHeld(id)) {
        f(id, held->name, kZeroMoney, kZeroMoney, UserState::Reserved);
      }
    }
  }

  /// Somebody looks at the table from now on: gets its state. A player of the table speaks for the own seat again.
  void enter(const ConnectionID& viewer, AccountID account);
  /// The viewer looks elsewhere, or its connection is gone.
  void leave(const ConnectionID& viewer);
  /// No more hands; the one that is played goes to its end.
  virtual void close();

  // What viewers send; from those who may not send it, it is passed over or refused.

  virtual void sitDown(const ConnectionID& viewer, const Account& account, const SeatID& seat,
                       const RealMoneyType& money) = 0;
  virtual void leaveSeat(const ConnectionID& viewer) = 0;
  virtual void tellMoney(const ConnectionID& viewer, AccountID account) = 0;
  virtual void bringMore(const ConnectionID& viewer, const RealMoneyType& amount) = 0;
  void comeBack(const ConnectionID& viewer);
  void act(const ConnectionID& viewer, UserAction action, const RealMoneyType& amount);
  void acknowledgeTurn(const ConnectionID& viewer);
  void choose(const ConnectionID& viewer, std::uint32_t actions, const RealMoneyType& amount, bool on);
  void chat(const ConnectionID& viewer, const std::string& name, const std::string& text,
            ChatMsgTypes::ChatStyle style);
  /// Fixes the next hand: the button, the players that it waits for, the cards in the order in which they are dealt.
  /// @return whether the cards can be had
  bool script(const SeatID& button, unsigned players, const std::string& cards);

 protected:
  struct Script {
    SeatID button;
    std::size_t players;
    std::vector<Card> cards;
  };

  /// All references must outlive the table.
  Table(asio::io_context& context, TableSettings settings, Outbox& outbox, TableHost& host);

  /// Whether the player of a seat is to be in the next hand.
  virtual bool isReady(const Seat& seat) const = 0;
  /// How many players the next hand waits for, if nobody has fixed it.
  virtual std::size_t playersNeeded() const { return 2; }
  /// Whether a hand may begin now, as far as the players suffice.
  virtual bool mayBegin() = 0;
  /// A hand is about to begin: what it is played for may still be changed.
  virtual void prepareHand() {}
  /// A hand is over, and viewers have not heard of it yet.
  /// @param booking  its players are those of `hand`, in the same order
  virtual void bookHand(const FinishedHand& booking, const Hand& hand) = 0;
  /// What follows from a hand that is over and that viewers have seen.
  virtual void afterHand() = 0;
  /// Between all changes and the next hand: seats whose players are in no hand may be taken away here.
  virtual void tidySeats() {}
  /// The last step of what follows from a change.
  virtual void afterChanges() {}
  /// A viewer has been told the table's state.
  /// @param seat  the viewer's own; null for who looks on
  virtual void greet(const ConnectionID& viewer, const Seat* seat) = 0;

  /// What follows from whatever has happened. To be called after each change.
  void afterChange();
  void changed();
  Seat* seatOf(const ConnectionID& viewer);
  /// A player takes a seat, with the invalid connection if nobody speaks for it.
  Seat& takeSeat(const SeatID& id, const Account& account, const RealMoneyType& stack, const ConnectionID& connection);
  /// Between hands.
  void vacate(Seat& seat);
  /// Tells all viewers how a seat stands.
  void announce(Seat& seat);
  TableSettings settings_;
  Audience audience_;
  Seats seats_;
  Dealer dealer_;
  Blinds blinds_;
  std::optional<Script> script_;
  bool closed_ = false;

 private:
  void onHandOver() override;
  void onTimePlayed() override { afterChange(); }
  ClientTableState stateFor(const SeatID& viewer);
  void countHand(const Hand& hand);
  void announceChanges();
  bool isDue();
  std::uint64_t draw();
  void scheduleHand();
  void beginHand();

  TableHost& host_;
  Deck deck_;
  std::variant<SystemRandom, std::mt19937_64> random_;
  asio::steady_timer handTimer_;
  bool handScheduled_ = false;
  bool handJustOver_ = false;
  std::uint64_t handsPlayed_ = 0;
  std::uint64_t changes_ = 0;
  Clock::time_point handBegan_;
  TableStatistics statistics_;
  FinishedHand booking_;
};

}  // namespace poker::holdem
