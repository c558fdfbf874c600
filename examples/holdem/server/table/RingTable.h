#pragma once

#include <examples/holdem/server/table/Table.h>

#include <cstdint>
#include <map>
#include <optional>

namespace poker::holdem {

class RingTable;

/// What a ring game's table needs of the server around it.
class RingTableHost : public TableHost {
 public:
  /// A hand is about to begin.
  virtual void onHandBegins() = 0;
  /// A hand is over, and viewers have not heard of it yet: the host writes it to the bank.
  /// @param booking  its players are those of `hand`, in the same order
  virtual void finishHand(const FinishedHand& booking, const Hand& hand) = 0;
  virtual void onHandOver(std::uint32_t gameID, std::uint64_t handsPlayed) = 0;
  /// The table has been closed and the last hand is over.
  virtual void onTableClosed() = 0;
  /// A seat has been taken or given up, or nobody may sit down there any more. Comes as onTableChanged() does.
  virtual void onSeatsChanged(RingTable& table) = 0;
};

/// A table of a ring game: players come and go as they like, with money from the bank, which knows every stack. The rules
/// of calls are Table's.
class RingTable final : public Table {
 public:
  /// Players whom the bank knows to sit here have their seats again, without a connection. All references must outlive
  /// the table.
  RingTable(asio::io_context& context, TableSettings settings, Bank& bank, Outbox& outbox, RingTableHost& host);

  /// All hands that it was to play are played (TableSettings::mostHands): no other one will follow.
  bool isPlayedOut() const { return settings_.mostHands != 0 && handsPlayed() >= settings_.mostHands; }

  /// A seat that is neither taken nor held; none when there is none, or the table is closed.
  SeatID freeSeat() const { return closed_ ? SeatID() : seats_.firstFree(settings_.seats); }
  /// Keeps a free seat for a player; all others find it taken.
  void hold(const SeatID& seat, const Account& account);
  /// Ends that, if the seat is still held.
  void release(const SeatID& seat);

  void close() override;
  void sitDown(const ConnectionID& viewer, const Account& account, const SeatID& seat,
               const RealMoneyType& money) override;
  void leaveSeat(const ConnectionID& viewer) override;
  void tellMoney(const ConnectionID& viewer, AccountID account) override;
  void bringMore(const ConnectionID& viewer, const RealMoneyType& amount) override;

 private:
  struct LastSitting {
    RealMoneyType stack;
    Clock::time_point until;
  };

  bool isReady(const Seat& seat) const override;
  std::size_t playersNeeded() const override { return handsPlayed() == 0 ? settings_.startWith : 2; }
  bool mayBegin() override;
  void prepareHand() override { host_.onHandBegins(); }
  void bookHand(const FinishedHand& booking, const Hand& hand) override { host_.finishHand(booking, hand); }
  void afterHand() override;
  void tidySeats() override;
  void afterChanges() override;
  void greet(const ConnectionID& viewer, const Seat* seat) override;

  RealMoneyType lastStack(AccountID account) const;
  std::optional<SrvErrorCode> whyNotSit(const Account& account, const SeatID& seat, const RealMoneyType& money);
  std::optional<SrvErrorCode> whyNotMore(const Seat& seat, const RealMoneyType& amount);
  void standUp(Seat& seat);
  void addChips(Seat& seat, const RealMoneyType& amount);
  void tellMoneyOf(const ConnectionID& viewer, AccountID account, const Seat* seat);
  void armSeatTimer();

  Bank& bank_;
  RingTableHost& host_;
  std::map<AccountID, LastSitting> lastSittings_;
  asio::steady_timer seatTimer_;
  Clock::time_point seatTimerFor_ = Clock::time_point::max();  // never
  bool closeTold_ = false;
};

}  // namespace poker::holdem
