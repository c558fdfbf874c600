#pragma once

#include <CommandProcessor/core/CommandForward.h>
#include <CommandProcessor/core/ProcessorFamily.h>
#include <CommandProcessor/platform/Export.h>

namespace poker {

/// Handles in the client what the server sends about tournaments. The host derives from it, gives processCommand its
/// body and overrides the handlers that it serves; the others do nothing.
///
/// It deliberately has no virtual destructor: processCommand is its first slot, where the other processors have their
/// destructor, and the handlers follow from the second. Never delete one through a pointer to this class.
///
/// The results are passed through; nothing in this library adds to a client-side collection. A handler runs on the
/// thread that dispatched the command and never releases it. The slot order is binding; a new handler goes to the end.
class COMMANDPROCESSOR_API SrvTourCmdProcessor {
 public:
  using Results = ProcessorTraits<SrvTourCmdProcessorType>::Results;

  /// Where the host calls the command's process(). The dispatcher ignores the answer, false by default, and reports the
  /// flag given at registration.
  virtual bool processCommand(PokerCommandTmpl<SrvTourCmdProcessorType>&) { return false; }

  /// Answers ClGetTourDetails: one tournament with its players.
  virtual void onSrvTourDetails(Results&, SrvTourDetails&) {}
  /// Answers ClGetTournamentsInfo: the tournaments of one kind.
  virtual void onSrvTournamentsInfo(Results&, SrvTournamentsInfo&) {}
  /// What a tournament waits for: players to register, seconds to its start, a break, an absent player.
  virtual void onSrvTourStartInfo(Results&, SrvTourStartInfo&) {}
  /// The player plays on at another table; the client opens it.
  virtual void onSrvTourMoveToTable(Results&, SrvTourMoveToTable&) {}
  /// Answers ClGetTourTableInfo: how the table is set up, and the kind of tournament.
  virtual void onSrvTourTableInfo(Results&, SrvTourTableInfo&) {}
  /// The blinds go to another level, or are about to: the new bets and when.
  virtual void onSrvLevelSwitch(Results&, SrvLevelSwitch&) {}
  /// Answers ClGetTourMoney: buy-in, fee and total.
  virtual void onSrvTourMoney(Results&, SrvTourMoney&) {}
  /// Answers ClTourUnregister with the reason to show.
  virtual void onSrvTourUnregisterResult(Results&, SrvTourUnregisterResult&) {}
  /// Answers ClTourRegister with the reason to show.
  virtual void onSrvTourRegisterResult(Results&, SrvTourRegisterResult&) {}
  /// A tournament went into another status (not started, started, suspended, finished).
  virtual void onSrvTourTourneyStatus(Results&, SrvTourTourneyStatus&) {}
  /// Answers ClGetMultiInitializeInfo: tables, players, texts and prizes with their versions.
  virtual void onSrvMultiTourInitialize(Results&, SrvMultiTourInitialize&) {}
  /// Answers ClGetUpdateInfo: the tables that changed.
  virtual void onSrvUpdateTables(Results&, SrvUpdateTables&) {}
  /// Answers ClGetUpdateInfo: the players that changed.
  virtual void onSrvUpdatePlayers(Results&, SrvUpdatePlayers&) {}
  /// Answers ClGetUpdateInfo: the texts that changed.
  virtual void onSrvUpdateText(Results&, SrvUpdateText&) {}
  /// Answers ClGetUpdateInfo: the new scheme of prizes.
  virtual void onSrvUpdatePrizeDescr(Results&, SrvUpdatePrizeDescr&) {}
  /// A tournament's money, start and course in one summary.
  virtual void onSrvMultiTourDetailedInfo(Results&, SrvMultiTourDetailedInfo&) {}
  /// The player is out of the tournament; carries the text to show.
  virtual void onSrvTourPlayerFinished(Results&, SrvTourPlayerFinished&) {}
  /// Answers ClGetExtraMoney: whether the re-buy or add-on was made, and the re-buys left.
  virtual void onSrvGetExtraMoneyReply(Results&, SrvGetExtraMoneyReply&) {}
  /// A protected tournament may not be watched without registering first.
  virtual void onSrvTourProtectionError(Results&, SrvTourProtectionError&) {}
  /// Answers ClGetUpdateInfo: the new prize fund.
  virtual void onSrvUpdatePrizeFund(Results&, SrvUpdatePrizeFund&) {}
  /// The players of a table that the client subscribed to, with their money.
  virtual void onSrvUpdatePlayersMoney(Results&, SrvUpdatePlayersMoney&) {}
  /// How the table is set up at which the player is to take its seat.
  virtual void onSrvTakeSeatInfo(Results&, SrvTakeSeatInfo&) {}
};

}  // namespace poker
