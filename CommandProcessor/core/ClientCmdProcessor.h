#pragma once

#include <CommandProcessor/core/CommandForward.h>
#include <CommandProcessor/core/ProcessorFamily.h>
#include <CommandProcessor/platform/Export.h>

namespace poker {

/// Handles on the server what clients send in the client and connection families. The host derives from it, gives
/// processCommand its body and overrides the handlers that it serves; the others do nothing.
///
/// A handler puts its answers into the results and never releases the command it was given: the caller of the command's
/// process() does. A handler runs on the thread that dispatched the command. The operations stand in slot order, which
/// is binding: the destructor, processCommand, then the handlers; a new one goes to the end.
class COMMANDPROCESSOR_API ClientCmdProcessor {
 public:
  using Results = ProcessorTraits<ClientCmdProcessorType>::Results;

  virtual ~ClientCmdProcessor() = default;

  /// Where the host makes the result collection, calls the command's process() and sends what the handlers collected.
  /// Its answer is what the dispatcher reports. The library's own body returns false.
  virtual bool processCommand(PokerCommandTmpl<ClientCmdProcessorType>& command) = 0;

  /// The first command of a connection, with the client's version: SrvHandShaked, or one of the refusals.
  virtual void onClHandShake(Results&, ClHandShake&) {}
  /// A client opens a table, with its password where it has one: SrvConnectGameOK, then the table's state.
  virtual void onClConnectGame(Results&, ClConnectGame&) {}
  /// The client ends its session on purpose; the host closes the connection without an answer.
  virtual void onClBye(Results&, ClBye&) {}
  /// A player queues for a seat at one table: SrvAddToWaitListOk or SrvAddToWaitListError.
  virtual void onClAddToWaitList(Results&, ClAddToWaitList&) {}
  /// A player leaves a table's queue: SrvRemoveFromWaitListOk or SrvRemoveFromWaitListError.
  virtual void onClRemoveFromWaitList(Results&, ClRemoveFromWaitList&) {}
  /// A player takes the seat that SrvWaitList held for it and says what money it brings.
  virtual void onClAcceptInvite(Results&, ClAcceptInvite&) {}
  /// A player declines the seat that SrvWaitList held for it; the host may offer it to the next one.
  virtual void onClRejectInvite(Results&, ClRejectInvite&) {}
  /// A player queues for a seat at any table that fits a kind of game, bets and a number of players.
  virtual void onClAddGlobalWaitList(Results&, ClAddGlobalWaitList&) {}
  /// A user logs on: SrvLogonOk, or SrvLogonError with the reason.
  virtual void onClLogon(Results&, ClLogon&) {}
  /// A player asks for a seat and says what it brings: SrvSitOk or SrvSitError.
  virtual void onClSitDown(Results&, ClSitDown&) {}
  /// A player gives up its seat; the host tells the table.
  virtual void onClLeaveSeat(Results&, ClLeaveSeat&) {}
  /// A player asks for its amounts of money: SrvMoney.
  virtual void onClGetMoney(Results&, ClGetMoney&) {}
  /// A seated player brings more money to the table; the amount is in the command.
  virtual void onClMoreMoney(Results&, ClMoreMoney&) {}
  /// The lobby asks for the tables of one kind as they changed since the version it holds: SrvServerInfo.
  virtual void onClGetServerInfo(Results&, ClGetServerInfo&) {}
  /// The lobby asks for the full description of one table: SrvGameInfo.
  virtual void onClGetGameInfo(Results&, ClGetGameInfo&) {}
  /// The transport lost a client's connection. Raised inside the host, with a class of its own; never travels.
  virtual void onCommDisconnected(Results&, CommDisconnected&) {}
  /// A player writes a chat line; the host passes it on to the table as SrvChatMsg.
  virtual void onClChatMsg(Results&, ClChatMsg&) {}
  /// A player answers its turn; the host tells the table with SrvUserActionNotify.
  virtual void onClUserAction(Results&, ClUserAction&) {}
  /// A player who sat out plays again: SrvBackOnSeatOk.
  virtual void onClBack(Results&, ClBack&) {}
  /// A player switches actions on or off that are to be taken for it when its turn comes.
  virtual void onClActionInAdvance(Results&, ClActionInAdvance&) {}
  /// The client reports an automatic player; the text that describes it is the client's own.
  virtual void onClBotAppEnter(Results&, ClBotAppEnter&) {}
  /// The client measures the connection: SrvPing, which says how many seconds the ping spent in the server.
  virtual void onClPing(Results&, ClPing&) {}
  /// The client shows that it is there. The one default with a body: adds a SrvKeepAliveReply with its number.
  virtual void onClKeepAlive(Results& results, ClKeepAlive& request);
  /// A user asks for more play money. The class is the host's own and never travels.
  virtual void onClIncresePlayMoney(Results&, ClIncresePlayMoney&) {}
  /// A user takes back a withdrawal. The class is the host's own and never travels.
  virtual void onClCancelWithdraw(Results&, ClCancelWithdraw&) {}
  /// The client confirms that its player's SrvUserTurn arrived; hosts measure the reply time from here.
  virtual void onClTurnReceived(Results&, ClTurnReceived&) {}
  /// A user changes its postal address; the host stores it.
  virtual void onClUpdateUserAddress(Results&, const ClUpdateUserAddress&) {}
  /// A user asks whom it referred. The class is the host's own and never travels.
  virtual void onClGetRefferalHistory(Results&, const ClGetRefferalHistory&) {}
  /// A user gives the table password that SrvRequestPass asked for; a wrong one is met with SrvPasswordError.
  virtual void onClSendUserPass(Results&, ClSendUserPass&) {}
  /// The client asks for the high-hand promotions, the finished ones too if it says so: SrvHighHandInfo.
  virtual void onClGetHighHand(Results&, ClGetHighHand&) {}
  /// The client reports its affiliate. The class is the host's own and never travels.
  virtual void onClReportAffInfo(Results&, ClReportAffInfo&) {}
  /// For hosts that pass the command on in memory: its family byte selects ClientMiscCmdProcessor instead.
  virtual void onClMyNewScreenName(Results&, ClMyNewScreenName&) {}
  /// A user changes its details. The class is the host's own and never travels.
  virtual void onClUpdateUserDetails(Results&, ClUpdateUserDetails&) {}
  /// A player asks for the history of one game or tournament by its number.
  virtual void onClGetHandHistory(Results&, const ClGetHandHistory&) {}
  /// One server component tells another which address belongs to a connection; never travels.
  virtual void onSrvIntrIPMapping(Results&, const SrvIntrIPMapping&) {}
  /// One server component asks another to dump its state; never travels.
  virtual void onSrvIntrDumpRequest(Results&, const SrvIntrDumpRequest&) {}
  /// One server component has another send a command to a client; never travels.
  virtual void onSrvIntSendCommand(Results&, SrvIntSendCommand&) {}
  /// One server component asks another for its number of tables; collects no answers, never travels.
  virtual void onSrvIntTableCountCommand(SrvIntGetTableCountCommand&) {}
  /// One server component tells another to stop; collects no answers, never travels.
  virtual void onSrvIntStopCommand(SrvIntStopCommand&) {}
  /// A server component reports that its shutdown is complete; collects no answers, never travels.
  virtual void onSrvIntShutdownProcessFinished(SrvIntShutdownProcessFinishedCommand&) {}
  /// A test script fixes the dealer's seat, the least number of players and the cards; refuse it in real play.
  virtual void onClScriptSetDealer(Results&, ClScriptSetDealer&) {}
};

}  // namespace poker
