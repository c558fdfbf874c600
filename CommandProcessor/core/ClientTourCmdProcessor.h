#pragma once

#include <CommandProcessor/core/CommandForward.h>
#include <CommandProcessor/core/ProcessorFamily.h>
#include <CommandProcessor/platform/Export.h>

namespace poker {

/// Handles on the server what clients send about tournaments. The host derives from it, gives processCommand its body
/// and overrides the handlers that it serves; the others do nothing.
///
/// A handler puts its answers, server tournament commands, into the results and never releases the command it was
/// given. A handler runs on the thread that dispatched the command. The operations stand in slot order, which is
/// binding: the destructor, processCommand, then the handlers; a new one goes to the end.
class COMMANDPROCESSOR_API ClientTourCmdProcessor {
 public:
  using Results = ProcessorTraits<ClientTourCmdProcessorType>::Results;

  virtual ~ClientTourCmdProcessor() = default;

  /// Where the host makes the result collection, calls the command's process() and sends what the handlers collected.
  /// Its answer, true by default, is what the dispatcher reports.
  virtual bool processCommand(PokerCommandTmpl<ClientTourCmdProcessorType>&) { return true; }

  /// The lobby asks for the details of one tournament: SrvTourDetails.
  virtual void onClGetTourDetails(Results&, const ClGetTourDetails&) {}
  /// The lobby asks for the tournaments of one kind: SrvTournamentsInfo.
  virtual void onClGetTournamentsInfo(Results&, const ClGetTournamentsInfo&) {}
  /// A client asks for the description of a tournament's table: SrvTourTableInfo.
  virtual void onClGetTourTableInfo(Results&, const ClGetTourTableInfo&) {}
  /// A player registers, with the password where one is needed: SrvTourRegisterResult.
  virtual void onClTourRegister(Results&, const ClTourRegister&) {}
  /// A player takes its registration back: SrvTourUnregisterResult.
  virtual void onClTourUnregister(Results&, const ClTourUnregister&) {}
  /// The lobby gives the versions it holds: one SrvUpdate... command for each part that is newer.
  virtual void onClGetUpdateInfo(Results&, const ClGetUpdateInfo&) {}
  /// The lobby asks for the full picture of a multi-table tournament: SrvMultiTourInitialize.
  virtual void onClGetMultiInitializeInfo(Results&, const ClGetMultiInitializeInfo&) {}
  /// The client drops its subscriptions to a tournament; no answer.
  virtual void onClUnsubscribeClient(Results&, const ClUnsubscribeClient&) {}
  /// A player asks what a tournament costs: SrvTourMoney.
  virtual void onClGetTourMoney(Results&, const ClGetTourMoney&) {}
  /// A player asks to be taken to its table of the tournament: SrvTourMoveToTable.
  virtual void onClMoveMe2MyTable(Results&, const ClMoveMe2MyTable&) {}
  /// A player asks for a re-buy or an add-on: SrvGetExtraMoneyReply.
  virtual void onClGetExtraMoney(Results&, const ClGetExtraMoney&) {}
  /// The client subscribes to the updates of one table; SrvUpdatePlayersMoney follows as they come.
  virtual void onClSubscribeForTable(Results&, const ClSubscribeForTable&) {}
  /// The client confirms a large answer. Carries no tournament id: the connection tells which one.
  virtual void onClBigInfoSent(Results&, const ClBigInfoSent&) {}
};

}  // namespace poker
