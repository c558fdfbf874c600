#include <examples/holdem/server/ClientTourCommands.h>

#include <examples/holdem/server/House.h>

namespace poker::holdem {

bool ClientTourCommands::processCommand(PokerCommandTmpl<ClientTourCmdProcessorType>& command) {
  house_.outbox().run([&] { command.process(unused_, *this); });
  return true;
}

// Questions

void ClientTourCommands::onClGetTournamentsInfo(Results&, const ClGetTournamentsInfo& request) {
  house_.forPlayer(request.getConnID(), [&](const Account&) {
    house_.tourDesk().tellList(request.getConnID(), request.getTourType(), request.getVersion());
  });
}

void ClientTourCommands::onClGetTourDetails(Results&, const ClGetTourDetails& request) {
  house_.forPlayer(request.getConnID(), [&](const Account& account) {
    house_.tourDesk().tellDetails(request.getConnID(), account.id, request.tournamentId(), request.getVersion());
  });
}

void ClientTourCommands::onClGetTourTableInfo(Results&, const ClGetTourTableInfo& request) {
  house_.forPlayer(request.getConnID(), [&](const Account& account) {
    house_.tourDesk().tellTable(request.getConnID(), account.id, request.tournamentId(), request.table());
  });
}

void ClientTourCommands::onClGetTourMoney(Results&, const ClGetTourMoney& request) {
  house_.forPlayer(request.getConnID(),
                   [&](const Account&) { house_.tourDesk().tellMoney(request.getConnID(), request.tournamentId()); });
}

void ClientTourCommands::onClGetMultiInitializeInfo(Results&, const ClGetMultiInitializeInfo& request) {
  house_.forPlayer(request.getConnID(), [&](const Account& account) {
    house_.tourDesk().tellPicture(request.getConnID(), account.id, request.tournamentId());
  });
}

void ClientTourCommands::onClBigInfoSent(Results&, const ClBigInfoSent& notice) {
  house_.forPlayer(notice.getConnID(), [&](const Account&) { house_.tourDesk().confirmPicture(notice.getConnID()); });
}

void ClientTourCommands::onClGetUpdateInfo(Results&, const ClGetUpdateInfo& request) {
  house_.forPlayer(request.getConnID(), [&](const Account& account) {
    house_.tourDesk().tellChanges(request.getConnID(), account.id, request.tournamentId(),
                                  {request.getTablesVer(), request.getPlayersVer(), request.getTextVer(),
                                   request.prizeVersion(), request.getFundVer()});
  });
}

void ClientTourCommands::onClSubscribeForTable(Results&, const ClSubscribeForTable& request) {
  house_.forPlayer(request.getConnID(), [&](const Account& account) {
    house_.tourDesk().subscribe(request.getConnID(), account.id, request.tournamentId(), request.getSubscribedTable());
  });
}

void ClientTourCommands::onClUnsubscribeClient(Results&, const ClUnsubscribeClient& request) {
  house_.tourDesk().unsubscribe(request.getConnID(), request.tournamentId());
}

// Players

void ClientTourCommands::onClTourRegister(Results&, const ClTourRegister& request) {
  house_.forPlayer(request.getConnID(),
                   [&](const Account& account) { house_.tourDesk().enter(request.getConnID(), account, request); });
}

void ClientTourCommands::onClTourUnregister(Results&, const ClTourUnregister& request) {
  house_.forPlayer(request.getConnID(), [&](const Account& account) {
    house_.tourDesk().withdraw(request.getConnID(), account.id, request.tournamentId());
  });
}

void ClientTourCommands::onClMoveMe2MyTable(Results&, const ClMoveMe2MyTable& request) {
  house_.forPlayer(request.getConnID(), [&](const Account& account) {
    Tournament* tournament = house_.tournaments().find(request.tournamentId());
    if (tournament != nullptr) tournament->bringToTable(account.id);
  });
}

void ClientTourCommands::onClGetExtraMoney(Results&, const ClGetExtraMoney& request) {
  house_.forPlayer(request.getConnID(), [&](const Account& account) {
    if (Tournament* tournament = house_.tournaments().find(request.tournamentId())) {
      tournament->getExtraMoney(request.getConnID(), account.id, request);
    } else {
      house_.outbox().add<SrvGetExtraMoneyReply>(request.getConnID(), request.getType(),
                                                 SrvGetExtraMoneyReply::Reason::Failed, 0u, false);
    }
  });
}

}  // namespace poker::holdem
