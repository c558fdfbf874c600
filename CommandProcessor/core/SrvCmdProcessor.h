#pragma once

#include <CommandProcessor/core/CommandForward.h>
#include <CommandProcessor/core/ProcessorFamily.h>
#include <CommandProcessor/platform/Export.h>

namespace poker {

/// Handles in the client what the server sends in the server and connection families. The host derives from it, gives
/// processCommand its body and overrides the handlers that it serves; the others do nothing.
///
/// The results are passed through; nothing in this library adds to a client-side collection. A handler runs on the
/// thread that dispatched the command and never releases it. The operations stand in slot order, which is binding: the
/// destructor, processCommand, then the handlers; a new one goes to the end.
class COMMANDPROCESSOR_API SrvCmdProcessor {
 public:
  using Results = ProcessorTraits<SrvCmdProcessorType>::Results;

  virtual ~SrvCmdProcessor() = default;

  /// Where the host calls the command's process(). The dispatcher ignores the answer, false by default, and reports the
  /// flag given at registration.
  virtual bool processCommand(PokerCommandTmpl<SrvCmdProcessorType>&) { return false; }

  /// The server's answer to ClHandShake when the connection is to be forwarded to another server.
  virtual void onForward(Results&, SrvForward&) {}
  /// The server cannot serve this client and names the server to use instead.
  virtual void onNotAvail(Results&, ServiceNotAvailable&) {}
  /// Answers ClConnectGame: the table is open to this client; carries a date and time.
  virtual void onSrvConnectGameOK(Results&, SrvConnectGameOK&) {}
  /// Answers ClHandShake: the server takes the connection, and the client may log on.
  virtual void onSrvHandShaked(Results&, SrvHandShaked&) {}
  /// Answers ClHandShake: the server refuses the connection.
  virtual void onSrvConnectError(Results&, SrvConnectError&) {}
  /// The server ends the connection; the client shows the text of the reason.
  virtual void onSrvErrorDisconnected(Results&, SrvErrorDisconnected&) {}
  /// Answers ClGetServerInfo: the tables of one kind that changed, and the version to ask from next time.
  virtual void onSrvServerInfo(Results&, SrvServerInfo&) {}
  /// The server pushes its counters (players, tables and the like) to the lobby.
  virtual void onSrvServerCountersInfo(Results&, SrvServerCountersInfo&) {}
  /// Answers ClGetGameInfo: the full description of one table.
  virtual void onSrvGameInfo(Results&, SrvGameInfo&) {}
  /// A notice from the administration, with a title and what the client is to do once it was read.
  virtual void onSrvAdminMsg(Results&, SrvAdminMsg&) {}
  /// A seat is held for this player; the client answers ClAcceptInvite or ClRejectInvite with the reservation id.
  virtual void onSrvWaitList(Results&, SrvWaitList&) {}
  /// A chat line for the table, with its sender, its kind and its style.
  virtual void onSrvChatMsg(Results&, SrvChatMsg&) {}
  /// Answers ClAddToWaitList: the player stands in the table's queue.
  virtual void onSrvAddToWaitListOk(Results&, SrvAddToWaitListOk&) {}
  /// Answers ClAddToWaitList: the player could not be queued.
  virtual void onSrvAddToWaitListError(Results&, SrvAddToWaitListError&) {}
  /// Answers ClRemoveFromWaitList: the player left the table's queue.
  virtual void onSrvRemoveFromWaitListOk(Results&, SrvRemoveFromWaitListOk&) {}
  /// Answers ClRemoveFromWaitList: the player could not be taken off the queue.
  virtual void onSrvRemoveFromWaitListError(Results&, SrvRemoveFromWaitListError&) {}
  /// Answers ClLogon: screen name, rights and money account; the previous seat where the player had one.
  virtual void onSrvLogonOk(Results&, SrvLogonOk&) {}
  /// Answers ClLogon: the reason of the refusal, a new PIN with one of them.
  virtual void onSrvLogonError(Results&, SrvLogonError&) {}
  /// Answers ClSitDown: the seat is the player's.
  virtual void onSrvSitOk(Results&, const SrvSitOk&) {}
  /// Answers ClSitDown: the reason of the refusal, with the amount that it speaks of.
  virtual void onSrvSitError(Results&, SrvSitError&) {}
  /// Answers ClGetMoney: four amounts of the player's money.
  virtual void onSrvMoney(Results&, SrvMoney&) {}
  /// Answers ClGetHighHand: the high-hand promotions.
  virtual void onSrvHighHandInfo(Results&, SrvHighHandInfo&) {}
  /// The whole state of a table, usually sent to a client that has just opened it.
  virtual void onSrvTableState(Results&, SrvTableState&) {}
  /// A seat changed: who sits there, with what money, in what state.
  virtual void onSrvUserStateOnTable(Results&, SrvUserStateOnTable&) {}
  /// Cards were dealt to seats; each card shows only what this recipient may see.
  virtual void onSrvTUCardDeal(Results&, SrvCardDeal&) {}
  /// Cards were dealt to the pot, in the layout of SrvCardDeal.
  virtual void onSrvPotCardDeal(Results&, SrvPotCardDeal&) {}
  /// The hand ends: the final players' cards and winnings, the wins and bets per seat, the house's profit.
  virtual void onSrvTUShowDown(Results&, SrvTUShowDown&) {}
  /// It is a seat's turn, with what it may do and for how long; its player answers ClTurnReceived, ClUserAction.
  virtual void onSrvUserTurn(Results&, SrvUserTurn&) {}
  /// A seat acted: what it did, its money and how many raises are left.
  virtual void onUserActionNotify(Results&, SrvUserActionNotify&) {}
  /// A betting round is closed: the pot, the bet, the rake and what to display.
  virtual void onBetRoundComplete(Results&, SrvBetRoundComplete&) {}
  /// A seat has no money left to play with, or could not bring more; carries the reason.
  virtual void onOutOfMoney(Results&, OutOfMoney&) {}
  /// The server replaces one of the hint texts that the client shows.
  virtual void onSrvUpdateHintText(Results&, SrvUpdateHintText&) {}
  /// Numbered news texts for the lobby.
  virtual void onSrvNews(Results&, SrvNews&) {}
  /// A notice about one table's occupancy; only the low 16 bits of the game id travel.
  virtual void onSrvOneUser(Results&, SrvOneUser&) {}
  /// A player left a table: how many are left there.
  virtual void onSrvPlayerLeave(Results&, SrvPlayerLeave&) {}
  /// Answers ClMiscGenerateSession: the session for the cashier or the web site.
  virtual void onSrvSessionCreated(Results&, SrvSessionCreated&) {}
  /// Answers ClMakeNewAccount: the account was created.
  virtual void onSrvRegistrationOk(Results&, SrvRegistrationOk&) {}
  /// Answers ClMakeNewAccount: the reason why it was not.
  virtual void onSrvRegistrationFail(Results&, SrvRegistrationFail&) {}
  /// Named values from the server, at most 255 of them.
  virtual void onSrvStringMapCommand(Results&, SrvStringMapCommand&) {}
  /// A hand starts: the seats that take part.
  virtual void onSrvGameStart(Results&, SrvGameStart&) {}
  /// Answers ClPing: the whole seconds that the ping spent in the server, modulo 256.
  virtual void onSrvPing(Results&, SrvPing&) {}
  /// Named values about the user's account, for the cashier.
  virtual void onSrvCashierStatus(Results&, SrvCashierStatus&) {}
  /// Answers ClValidateEmail: the address that is valid now.
  virtual void onSrvEmailValidated(Results&, const SrvEmailValidated&) {}
  /// Answers ClMiscGetCreditCardInfo: the user's cards as the cashier knows them.
  virtual void onSrvCreditCardInfo(Results&, SrvCreditCardInfo&) {}
  /// The user's money transactions, for the cashier.
  virtual void onSrvTransHistory(Results&, SrvTransHistory&) {}
  /// A seat shows its cards.
  virtual void onSrvShowPlayerCards(Results&, SrvShowPlayerCards&) {}
  /// An operation of the cashier failed; carries the text to show.
  virtual void onSrvCashierOperationFail(Results&, const SrvCashierOperationFail&) {}
  /// The client plays an animation of the given kind.
  virtual void onSrvStartAnimation(Results&, const SrvStartAnimation&) {}
  /// Answers ClGetPlayerProfile: the profile, and whether there is one.
  virtual void onSrvPlayerProfile(Results&, const SrvPlayerProfile&) {}
  /// Answers ClBack: the seat plays again.
  virtual void onSrvBackOnSeatOk(Results&, const SrvBackOnSeatOk&) {}
  /// A sign beside a seat is switched on or off.
  virtual void onSrvShowSignOnUser(Results&, const SrvShowSignOnUser&) {}
  /// A user won a promotion: who, in which deal, with which hand.
  virtual void onSrvUserWonPromotion(Results&, const SrvUserWonPromotion&) {}
  /// The client sets its wait lists up. The class is the host's own and never travels.
  virtual void onSrvWaitListInit(Results&, const SrvWaitListInit&) {}
  /// The user's rights or money account changed after logon.
  virtual void onSrvLogonChange(Results&, const SrvLogonChange&) {}
  /// Answers ClMiscGetPromoInfo: the user's bonus money.
  virtual void onSrvPromoInfo(Results&, const SrvPromoInfo&) {}
  /// The table is protected: the client asks the user for the password and answers ClSendUserPass.
  virtual void onSrvRequestPass(Results&, const SrvRequestPass&) {}
  /// Answers ClSendUserPass: the password is wrong; says whether the table's window is to close.
  virtual void onSrvPasswordError(Results&, const SrvPasswordError&) {}
  /// A short notice about a promotion.
  virtual void onSrvPromoNotify(Results&, const SrvPromoNotify&) {}
  /// A newer client exists; shows the text and may have to close. Can come at any time.
  virtual void onSrvNewClientVersionAvail(Results&, const SrvNewClientVersionAvail&) {}
  /// The server's word about the user's play money.
  virtual void onSrvPlayMoneyMessage(Results&, const SrvPlayMoneyMessage&) {}
  /// Answers ClHandShake: the server is busy; the client tries again later.
  virtual void onSrvBusy(Results&, const SrvBusy&) {}
  /// Answers ClRplGetHandHistory: the texts of the hands.
  virtual void onSrvRplHandHistory(Results&, const SrvRplHandHistory&) {}
  /// Answers ClRplGetHandHistory: the numbers of the hands that match.
  virtual void onSrvRplHandHistoryList(Results&, const SrvRplHandHistoryList&) {}
  /// The dealer chip moves to a seat.
  virtual void onMoveDealChip(Results&, SrvMoveDealChip&) {}
  /// A seat posts a blind.
  virtual void onSrvPostBlind(Results&, SrvPostBlind&) {}
  /// Which position the player has in this hand (blinds, post, straddle or none of them).
  virtual void onSrvHoldemPlayerPos(Results&, SrvHoldemPlayerPos&) {}
  /// The kill button moves to a seat.
  virtual void onSrvMoveKillButton(Results&, SrvMoveKillButton&) {}
  /// Answers ClKeepAlive with the same number.
  virtual void onSrvKeepAliveReply(Results&, const SrvKeepAliveReply&) {}
  /// Answers ClGetNewPicture: the bytes of a user's picture.
  virtual void onSrvSendUserPic(Results&, const SrvSendUserPic&) {}
  /// The server is, or is about to be, in maintenance; carries the text to show.
  virtual void onSrvMaintenance(Results&, const SrvMaintenance&) {}
};

}  // namespace poker
