#include <examples/holdem/client/TourCommands.h>

namespace poker::holdem {

bool TourCommands::processCommand(PokerCommandTmpl<SrvTourCmdProcessorType>& command) {
  command.process(results_, *this);
  return true;
}

void TourCommands::onSrvMultiTourInitialize(Results&, SrvMultiTourInitialize& command) {
  tell(&TourEvents::onTourPicture, command);
  confirm_(command.tourID());
}

void TourCommands::onSrvTourDetails(Results&, SrvTourDetails& command) { tell(&TourEvents::onTourDetails, command); }

void TourCommands::onSrvTournamentsInfo(Results&, SrvTournamentsInfo& command) {
  tell(&TourEvents::onTournaments, command);
}

void TourCommands::onSrvTourStartInfo(Results&, SrvTourStartInfo& command) {
  tell(&TourEvents::onTourStartInfo, command);
}

void TourCommands::onSrvTourMoveToTable(Results&, SrvTourMoveToTable& command) {
  tell(&TourEvents::onTourMove, command);
}

void TourCommands::onSrvTourTableInfo(Results&, SrvTourTableInfo& command) {
  tell(&TourEvents::onTourTableInfo, command);
}

void TourCommands::onSrvLevelSwitch(Results&, SrvLevelSwitch& command) { tell(&TourEvents::onLevelSwitch, command); }

void TourCommands::onSrvTourMoney(Results&, SrvTourMoney& command) { tell(&TourEvents::onTourMoney, command); }

void TourCommands::onSrvTourUnregisterResult(Results&, SrvTourUnregisterResult& command) {
  tell(&TourEvents::onTourUnregistration, command);
}

void TourCommands::onSrvTourRegisterResult(Results&, SrvTourRegisterResult& command) {
  tell(&TourEvents::onTourRegistration, command);
}

void TourCommands::onSrvTourTourneyStatus(Results&, SrvTourTourneyStatus& command) {
  tell(&TourEvents::onTourStatus, command);
}

void TourCommands::onSrvUpdateTables(Results&, SrvUpdateTables& command) { tell(&TourEvents::onTourTables, command); }

void TourCommands::onSrvUpdatePlayers(Results&, SrvUpdatePlayers& command) {
  tell(&TourEvents::onTourPlayers, command);
}

void TourCommands::onSrvUpdateText(Results&, SrvUpdateText& command) { tell(&TourEvents::onTourText, command); }

void TourCommands::onSrvUpdatePrizeDescr(Results&, SrvUpdatePrizeDescr& command) {
  tell(&TourEvents::onTourPrizes, command);
}

void TourCommands::onSrvMultiTourDetailedInfo(Results&, SrvMultiTourDetailedInfo& command) {
  tell(&TourEvents::onTourSummary, command);
}

void TourCommands::onSrvTourPlayerFinished(Results&, SrvTourPlayerFinished& command) {
  tell(&TourEvents::onTourPlayerFinished, command);
}

void TourCommands::onSrvGetExtraMoneyReply(Results&, SrvGetExtraMoneyReply& command) {
  tell(&TourEvents::onExtraMoney, command);
}

void TourCommands::onSrvTourProtectionError(Results&, SrvTourProtectionError& command) {
  tell(&TourEvents::onTourProtected, command);
}

void TourCommands::onSrvUpdatePrizeFund(Results&, SrvUpdatePrizeFund& command) {
  tell(&TourEvents::onTourFund, command);
}

void TourCommands::onSrvUpdatePlayersMoney(Results&, SrvUpdatePlayersMoney& command) {
  tell(&TourEvents::onTourPlayersMoney, command);
}

void TourCommands::onSrvTakeSeatInfo(Results&, SrvTakeSeatInfo& command) { tell(&TourEvents::onTakeSeat, command); }

}  // namespace poker::holdem
