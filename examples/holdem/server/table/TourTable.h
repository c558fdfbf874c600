#pragma once

#include <CommandProcessor/types/GameStartupInfo.h>
#include <examples/holdem/server/table/Table.h>

#include <cstddef>
#include <cstdint>

namespace poker::holdem {

class TourTable;

/// What a tournament's table needs of its tournament.
class TourTableHost : public TableHost {
 public:
  /// Whether the tournament wants a hand at that table now.
  virtual bool mayBegin(TourTable& table) = 0;
  /// A hand is about to begin: the moment to change the blinds.
  virtual void onHandBegins(TourTable& table) = 0;
  /// A hand is over, and viewers have not heard of it yet.
  /// @param booking  its players are those of `hand`, in the same order
  virtual void bookHand(TourTable& table, const FinishedHand& booking, const Hand& hand) = 0;
  /// Viewers have seen the end of a hand. No other one begins before mayBegin() says so.
  virtual void onHandOver(TourTable& table) = 0;
  /// A viewer has been told the table's state.
  /// @param seat  the viewer's own; null for who looks on
  virtual void onEntered(TourTable& table, const ConnectionID& viewer, const Seat* seat) = 0;
};

/// A table of a tournament: who sits there is for the tournament to say, and all who sit there are dealt in. Stacks are
/// tournament chips, of which the bank knows nothing. The rules of calls are Table's.
class TourTable final : public Table {
 public:
  /// All references must outlive the table.
  TourTable(asio::io_context& context, TableSettings settings, Outbox& outbox, TourTableHost& host);

  // Between hands, but for seating somebody.

  /// The player gets a free seat; there must be one. Nobody speaks for it yet.
  SeatID seat(const Account& account, const RealMoneyType& chips, bool sitsOut = false);
  /// The player goes, who sits here.
  /// @return the chips that it takes along
  RealMoneyType unseat(AccountID account);
  void addChips(AccountID account, const RealMoneyType& chips);
  /// Other blinds from the next hand on; all who look are told.
  /// @param level  from 1
  /// @param units  that the level lasts: seconds or hands
  void setBlinds(const RealMoneyType& smallBlind, const RealMoneyType& bigBlind, std::int16_t level, std::int32_t units,
                 TOUR_NAMES::SwitchType type);
  /// The tournament may say something else now: begins a hand if it wants one.
  void proceed() { afterChange(); }

  /// What the player has; in a hand, what it began that with.
  RealMoneyType stackOf(AccountID account);
  /// What all of its players have, in the same way.
  RealMoneyType chips();
  /// Calls `f(name, chips)` for each player, by seat; in a hand with what it began that with.
  template <class F>
  void forEachStack(F&& f) {
    seats_.forEach([&](const Seat& seat) { f(seat.name, seat.stack); });
  }
  bool sitsOut(AccountID account);
  /// Who speaks for the player here; the invalid id when nobody does.
  ConnectionID connectionOf(AccountID account);
  /// Whether the player is in a hand that is played.
  bool isInHand(AccountID account);
  /// Players whose connection looks at the table.
  std::size_t present();
  /// The player who is to have the big blind next; there must be a player.
  AccountID nextBigBlind();
  /// Another number whenever a stack may have changed that is seen between hands.
  std::uint64_t chipChanges() const { return chipChanges_; }
  /// What a client needs to open the table.
  /// @param ownSeat  none for who looks on
  GameStartupInfo startupInfo(std::uint32_t tournamentID, const SeatID& ownSeat) const;
  /// Sends a T to all who look.
  template <class T, class... Args>
  void tell(Args&&... args) {
    audience_.tellAll<T>(std::forward<Args>(args)...);
  }

  void sitDown(const ConnectionID& viewer, const Account& account, const SeatID& seat,
               const RealMoneyType& money) override;
  void leaveSeat(const ConnectionID& viewer) override;
  void tellMoney(const ConnectionID& viewer, AccountID account) override;
  void bringMore(const ConnectionID& viewer, const RealMoneyType& amount) override;

 private:
  bool isReady(const Seat& seat) const override { return seat.stack > kZeroMoney; }
  bool mayBegin() override { return host_.mayBegin(*this); }
  void prepareHand() override { host_.onHandBegins(*this); }
  void bookHand(const FinishedHand& booking, const Hand& hand) override { host_.bookHand(*this, booking, hand); }
  void afterHand() override;
  void tidySeats() override;
  void greet(const ConnectionID& viewer, const Seat* seat) override { host_.onEntered(*this, viewer, seat); }

  TourTableHost& host_;
  std::uint64_t chipChanges_ = 0;
};

}  // namespace poker::holdem
