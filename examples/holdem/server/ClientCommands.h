#pragma once

#include <CommandProcessor/commands/AllCommands.h>
#include <CommandProcessor/core/ClientCmdProcessor.h>
#include <CommandProcessor/core/ClientMiscCmdProcessor.h>
#include <hostkit/CommandHandle.h>
#include <hostkit/Results.h>

#include <ctime>
#include <optional>
#include <utility>

namespace poker::holdem {

class House;
class Server;

/// What this server does when a client's command arrives: a handler a command. ClKeepAlive is answered by the base class.
class ClientCommands final : public ClientCmdProcessor {
 public:
  /// @param server, house  must outlive this object
  ClientCommands(Server& server, House& house) : server_(server), house_(house) {}

  /// Calls the command's handler and sends what it answers.
  /// @return true
  bool processCommand(PokerCommandTmpl<ClientCmdProcessorType>& command) override;

  void onClHandShake(Results& results, ClHandShake& request) override;
  void onClPing(Results& results, ClPing& request) override;
  void onClBye(Results& results, ClBye& request) override;

  void onClLogon(Results& results, ClLogon& request) override;
  void onClConnectGame(Results& results, ClConnectGame& request) override;
  void onClSendUserPass(Results& results, ClSendUserPass& request) override;
  void onClBotAppEnter(Results& results, ClBotAppEnter& notice) override;

  void onClGetServerInfo(Results& results, ClGetServerInfo& request) override;
  void onClGetGameInfo(Results& results, ClGetGameInfo& request) override;
  void onClAddToWaitList(Results& results, ClAddToWaitList& request) override;
  void onClAddGlobalWaitList(Results& results, ClAddGlobalWaitList& request) override;
  void onClRemoveFromWaitList(Results& results, ClRemoveFromWaitList& request) override;
  void onClAcceptInvite(Results& results, ClAcceptInvite& request) override;
  void onClRejectInvite(Results& results, ClRejectInvite& request) override;

  void onClSitDown(Results& results, ClSitDown& request) override;
  void onClLeaveSeat(Results& results, ClLeaveSeat& request) override;
  void onClBack(Results& results, ClBack& request) override;
  void onClGetMoney(Results& results, ClGetMoney& request) override;
  void onClMoreMoney(Results& results, ClMoreMoney& request) override;

  void onClTurnReceived(Results& results, ClTurnReceived& notice) override;
  void onClUserAction(Results& results, ClUserAction& action) override;
  void onClActionInAdvance(Results& results, ClActionInAdvance& choice) override;
  void onClChatMsg(Results& results, ClChatMsg& message) override;
  void onClScriptSetDealer(Results& results, ClScriptSetDealer& script) override;
  void onClGetHighHand(Results& results, ClGetHighHand& request) override;

  void onClGetHandHistory(Results& results, const ClGetHandHistory& request) override;

 private:
  /// Puts a T for the request's sender into the results.
  template <class T, class... Args>
  static void answer(Results& results, const PokerCommandI& request, Args&&... args) {
    addReply(results, request, make<T>(std::forward<Args>(args)...));
  }

  Server& server_;
  House& house_;
  Results results_;
  std::time_t arrival_ = 0;      // of the command in hand
  bool endsConnection_ = false;  // once the answers to the command in hand are out
};

/// The same for the commands about accounts, profiles and gifts.
class ClientMiscCommands final : public ClientMiscCmdProcessor {
 public:
  /// @param house  must outlive this object
  explicit ClientMiscCommands(House& house) : house_(house) {}

  void processCommand(PokerCommandTmpl<ClientMiscCmdProcessorType>& command) override;

  void onClMakeNewAccount(ClMakeNewAccount& request) override;
  void onClRplGetHandHistory(ClRplGetHandHistory& request) override;

  void onClGetPlayerProfile(const ClGetPlayerProfile& request) override;
  void onClUpdatePlayerProfile(const ClUpdatePlayerProfile& request) override;
  void onClGetNewPicture(const ClGetNewPicture& request) override;
  void onClUpdateUserPic(const ClUpdateUserPic& request) override;
  void onClMiscGetPromoInfo(ClMiscGetPromoInfo& request) override;

 private:
  void answerProfile(const ConnectionID& client, const std::optional<MemberProfileInfo>& profile);

  House& house_;
  Results unused_;
};

}  // namespace poker::holdem
