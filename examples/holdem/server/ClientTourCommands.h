#pragma once

#include <CommandProcessor/commands/AllCommands.h>
#include <CommandProcessor/core/ClientTourCmdProcessor.h>
#include <CommandProcessor/core/CommandsResult.h>

namespace poker::holdem {

class House;

/// What this server does when a client's command about a tournament arrives: a handler a command.
class ClientTourCommands final : public ClientTourCmdProcessor {
 public:
  /// @param house  must outlive this object
  explicit ClientTourCommands(House& house) : house_(house) {}

  /// Calls the command's handler and sends what the house answers.
  /// @return true
  bool processCommand(PokerCommandTmpl<ClientTourCmdProcessorType>& command) override;

  void onClGetTournamentsInfo(Results& results, const ClGetTournamentsInfo& request) override;
  void onClGetTourDetails(Results& results, const ClGetTourDetails& request) override;
  void onClGetTourTableInfo(Results& results, const ClGetTourTableInfo& request) override;
  void onClGetTourMoney(Results& results, const ClGetTourMoney& request) override;
  void onClGetMultiInitializeInfo(Results& results, const ClGetMultiInitializeInfo& request) override;
  void onClBigInfoSent(Results& results, const ClBigInfoSent& notice) override;
  void onClGetUpdateInfo(Results& results, const ClGetUpdateInfo& request) override;
  void onClSubscribeForTable(Results& results, const ClSubscribeForTable& request) override;
  void onClUnsubscribeClient(Results& results, const ClUnsubscribeClient& request) override;

  void onClTourRegister(Results& results, const ClTourRegister& request) override;
  void onClTourUnregister(Results& results, const ClTourUnregister& request) override;
  void onClMoveMe2MyTable(Results& results, const ClMoveMe2MyTable& request) override;
  void onClGetExtraMoney(Results& results, const ClGetExtraMoney& request) override;

 private:
  House& house_;
  Results unused_;  // answers go to the house's outbox, among all else that follows
};

}  // namespace poker::holdem
