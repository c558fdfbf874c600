#pragma once

#include <examples/holdem/client/HouseClient.h>
#include <examples/holdem/client/TablePicture.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace poker::holdem {

struct PlayerSettings : VisitorSettings {
  std::uint32_t gameID = 1;
  std::string tablePassword;  ///< of a private table
  bool sitsDown = false;      ///< otherwise it looks on
  SeatID seat;                ///< none: any free one
  RealMoneyType buyIn;        ///< zero: a hundred big blinds, or what comes nearest
  bool waits = false;         ///< queues when every seat is taken

  // In a tournament, which finds the player its tables and seats, so that what is above does not count.
  std::uint32_t tournamentID = 0;  ///< 0: a ring game
  std::string tournamentPassword;
  bool registersForTour = false;  ///< otherwise it is registered already
};

/// What a player, or a program that plays, hears of. The client's picture of the table is up to date in each call, but
/// where it is said otherwise.
class PlayerEvents : public HouseEvents {
 public:
  /// The table as it is now: after coming in, and again after coming back.
  virtual void onTableState() {}
  /// The own seat was taken.
  virtual void onSeated(SeatID) {}
  /// The own seat is given up, at whoever's wish. Not in a tournament.
  virtual void onUnseated() {}
  /// It is the own turn. The acknowledgement is sent.
  virtual void onTurn(const NextTurnOptions&, std::chrono::seconds) {}

  virtual void onHandBegins() {}
  virtual void onDealer() {}
  /// @param before  the seat as it was
  virtual void onAction(const SrvUserActionNotify&, const ClientSeatState& /*before*/) {}
  virtual void onCardsDealt(const SrvCardDeal&) {}
  /// Anybody's turn, the own one included.
  virtual void onTurnOf(SeatID, std::chrono::seconds) {}
  virtual void onBoard(const SrvPotCardDeal&) {}
  virtual void onRoundOver(const SrvBetRoundComplete&) {}
  virtual void onCardsShown(const SrvShowPlayerCards&) {}
  /// The hand is over. The picture still shows it; the next event finds the wins in the stacks.
  virtual void onShowDown(const SrvTUShowDown&) {}
  /// @param before  null when nobody was there
  virtual void onSeatChange(const SrvUserStateOnTable&, const ClientSeatState* /*before*/) {}

  virtual void onChat(const SrvChatMsg&) {}
  virtual void onMoney(const SrvMoney&) {}
  /// The stack is gone: ClMoreMoney keeps the seat, or, in a tournament, ClGetExtraMoney the place.
  virtual void onOutOfMoney(const OutOfMoney&) {}
  /// The tournament is over for this player, who is out or has won, or it was called off. Said once, after all of that.
  virtual void onTourOver() {}
};

/// A player's connection, or that of somebody who looks on, to a table of the house: sits down or waits for a seat, and
/// keeps the picture of the table up to date. Who comes back after the connection broke is at the table again. With a
/// tournament it registers there instead, and the server brings it from table to table; the picture is that of the last
/// one. The rules are HouseClient's.
class PlayerClient final : public HouseClient, private TourEvents {
 public:
  /// A seat that is held for the player.
  struct Invitation {
    std::uint32_t gameID;
    std::string reserveID;
  };

  /// @param events  must outlive this object
  PlayerClient(asio::io_context& context, PlayerSettings settings, PlayerEvents& events);

  const PlayerSettings& settings() const { return settings_; }
  const TablePicture& picture() const { return picture_; }
  /// Whether the connection stands and the table is before the player. What players do at a table is for then.
  bool isAtTable() const { return isSettled() && hasTable_; }
  bool isInTournament() const { return settings_.tournamentID != 0; }
  /// Whether the tournament knows of this player.
  bool isRegistered() const { return isRegistered_; }

  /// Answers the turn; without an amount it is the least.
  void act(UserAction action, RealMoneyType amount);
  void chat(const std::string& text) { send<ClChatMsg>(text.c_str(), ChatMsgTypes::Normal); }
  /// Asks for this seat; without one for that of the settings, or for a free one. Not for a tournament.
  void sitDown(SeatID seat = {});
  /// Gives the seat up, if there is one, and looks on. Not for a tournament.
  void standUp();
  /// Gives the seat up, says bye when that is done, and ends with PlayerEnd::Left. The seat of a tournament that has begun
  /// stays, and is blinded away; before that the registration is taken back, also one that is not answered yet.
  void leave();
  /// Asks for a re-buy or the add-on, at the tournament's price; without `state` takes that back.
  void askForExtraMoney(ExtraMoneyRequest type, bool state = true);

  /// Whether every seat is taken or held for somebody.
  bool isFull() const { return !freeSeat(); }
  /// Queues for a seat at this table. Not for a tournament.
  void wait();
  void stopWaiting();
  /// Whether the player stands in this table's queue, or is about to.
  bool isWaiting() const { return isWaiting_; }
  const std::optional<Invitation>& invitation() const { return invitation_; }
  /// Takes the seat that is held, if one is; without an amount as in the settings.
  void acceptInvitation(RealMoneyType money = {});
  /// Leaves it to the next one.
  void rejectInvitation();

 private:
  std::optional<SeatID> freeSeat() const;
  RealMoneyType usualBuyIn() const;
  void endWaiting();
  bool hasBegun() const { return status_ && *status_ >= TOUR_NAMES::TourStatus::Prestarted; }
  void askForMyTable();
  void endTour();

  void onEntered() override;
  void onSrvPing(Results&, SrvPing&) override;
  void onSrvRequestPass(Results&, const SrvRequestPass&) override;
  void onSrvPasswordError(Results&, const SrvPasswordError& refusal) override;
  void onSrvWaitList(Results&, SrvWaitList& command) override;
  void onSrvAddToWaitListError(Results&, SrvAddToWaitListError& refusal) override;
  void onSrvRemoveFromWaitListOk(Results&, SrvRemoveFromWaitListOk& command) override;
  void onSrvRemoveFromWaitListError(Results&, SrvRemoveFromWaitListError& refusal) override;
  void onSrvTableState(Results&, SrvTableState& command) override;
  void onSrvSitOk(Results&, const SrvSitOk& command) override;
  void onSrvSitError(Results&, SrvSitError& refusal) override;
  void onSrvMoney(Results&, SrvMoney& command) override;
  void onOutOfMoney(Results&, OutOfMoney& command) override;
  void onSrvUserStateOnTable(Results&, SrvUserStateOnTable& command) override;
  void onSrvUpdateHintText(Results&, SrvUpdateHintText& command) override;
  void onSrvGameStart(Results&, SrvGameStart& command) override;
  void onMoveDealChip(Results&, SrvMoveDealChip& command) override;
  void onUserActionNotify(Results&, SrvUserActionNotify& command) override;
  void onSrvTUCardDeal(Results&, SrvCardDeal& command) override;
  void onSrvUserTurn(Results&, SrvUserTurn& command) override;
  void onBetRoundComplete(Results&, SrvBetRoundComplete& command) override;
  void onSrvPotCardDeal(Results&, SrvPotCardDeal& command) override;
  void onSrvShowPlayerCards(Results&, SrvShowPlayerCards& command) override;
  void onSrvTUShowDown(Results&, SrvTUShowDown& command) override;
  void onSrvChatMsg(Results&, SrvChatMsg& command) override;

  void onTourRegistration(const SrvTourRegisterResult& result) override;
  void onTourStatus(const SrvTourTourneyStatus& command) override;
  void onTakeSeat(const SrvTakeSeatInfo& command) override;
  void onTourProtected(const SrvTourProtectionError& refusal) override;
  void onLevelSwitch(const SrvLevelSwitch& command) override { picture_.apply(command); }
  void onTourPlayerFinished(const SrvTourPlayerFinished&) override;

  PlayerSettings settings_;
  PlayerEvents& events_;
  TablePicture picture_;
  ClientSeatState before_;  // keeps its memory from one command to the next
  bool isWaiting_ = false;
  std::optional<Invitation> invitation_;
  bool isAccepting_ = false;  // the answer to the invitation is on its way
  bool hasTable_ = false;     // on this connection

  // Of the tournament.
  bool isRegistering_ = false;  // and has not been answered
  bool isRegistered_ = false;
  bool isTourOver_ = false;                       // for this player
  std::optional<TOUR_NAMES::TourStatus> status_;  // told on this connection, as it is to who takes part
  unsigned asksForTable_ = 0;                     // so often without an answer
  bool isBrought_ = false;                        // to a seat, since the last answer
  Later tellOver_;                                // after the event that it comes of
};

}  // namespace poker::holdem
