#include <examples/holdem/server/ClientCommands.h>

#include <examples/holdem/server/House.h>
#include <examples/holdem/server/Server.h>
#include <examples/holdem/shared/LogLine.h>
#include <examples/holdem/shared/Protocol.h>
#include <inspect/CommandText.h>

#include <fmt/format.h>

#include <string>
#include <string_view>

namespace poker::holdem {

namespace {

/// That a player is told of, the newest.
constexpr std::size_t kMostGifts = 100;

}  // namespace

bool ClientCommands::processCommand(PokerCommandTmpl<ClientCmdProcessorType>& command) {
  arrival_ = std::time(nullptr);
  endsConnection_ = false;
  const ConnectionID sender = command.getConnID();
  house_.outbox().run([&] {
    const ResultsGuard guard(results_);
    command.process(results_, *this);
    house_.outbox().take(results_);
  });
  if (endsConnection_) server_.finish(sender);
  return true;
}

// The connection

void ClientCommands::onClHandShake(Results& results, ClHandShake& request) {
  const ServerSettings& settings = server_.settings();
  endsConnection_ = true;
  if (server_.isDraining()) {
    answer<SrvMaintenance>(results, request, settings.farewell, kMaintenanceBegins);
  } else if (settings.movedTo) {
    answer<ServiceNotAvailable>(results, request, settings.movedTo->toString().c_str());
  } else if (request.version() < settings.minimumVersion) {
    answer<SrvNewClientVersionAvail>(results, request, SrvNewClientVersionAvail::ForcedUpgrade,
                                     SrvNewClientVersionAvail::StandardAndCustomText, settings.versionText.c_str());
  } else if (!server_.admit(request.getConnID(), request.version())) {
    answer<SrvBusy>(results, request);
  } else {
    endsConnection_ = false;
    answer<SrvHandShaked>(results, request);
    if (request.version() < settings.currentVersion) {
      answer<SrvNewClientVersionAvail>(results, request, SrvNewClientVersionAvail::OptionalUpgrade,
                                       SrvNewClientVersionAvail::StandardAndCustomText, settings.versionText.c_str());
    }
    if (server_.isMaintenanceAnnounced()) {
      answer<SrvMaintenance>(results, request, settings.announcement, kMaintenanceAnnounced);
    }
  }
}

void ClientCommands::onClPing(Results& results, ClPing& request) {
  answer<SrvPing>(results, request, static_cast<std::int32_t>(arrival_));
}

void ClientCommands::onClBye(Results&, ClBye&) { endsConnection_ = true; }

// Players and tables

void ClientCommands::onClLogon(Results&, ClLogon& request) {
  house_.logOn(request.getConnID(), request.userName(), request.password());
}

void ClientCommands::onClConnectGame(Results&, ClConnectGame& request) {
  house_.enterTable(request.getConnID(), request.getGameID(), request.getPass());
}

void ClientCommands::onClSendUserPass(Results&, ClSendUserPass& request) {
  house_.tellPassword(request.getConnID(), request.getPassword());
}

void ClientCommands::onClBotAppEnter(Results&, ClBotAppEnter& notice) {
  logLine(house_.log(), 0, "bot conn={} program={}", notice.getConnID().value(), quoted(notice.str()));
}

// The lobby

void ClientCommands::onClGetServerInfo(Results&, ClGetServerInfo& request) {
  house_.forPlayer(request.getConnID(), [&](const Account&) {
    if (request.getRequestedType() == kRingGames) {
      house_.lobby().lookAtList(request.getConnID(), request.getVersion());
    } else {
      house_.lobby().lookAwayFromList(request.getConnID());
    }
  });
}

void ClientCommands::onClGetGameInfo(Results&, ClGetGameInfo& request) {
  house_.forPlayer(request.getConnID(), [&](const Account&) {
    if (request.getGameID() == 0) {
      house_.lobby().lookAwayFromTable(request.getConnID());
    } else {
      house_.lobby().lookAtTable(request.getConnID(), request.getGameID(), request.getVersion());
    }
  });
}

void ClientCommands::onClAddToWaitList(Results&, ClAddToWaitList& request) {
  house_.forPlayer(request.getConnID(), [&](const Account& account) {
    house_.waitLists().waitForTable(request.getConnID(), account, request.gameID());
  });
}

void ClientCommands::onClAddGlobalWaitList(Results&, ClAddGlobalWaitList& request) {
  house_.forPlayer(request.getConnID(), [&](const Account& account) {
    house_.waitLists().waitForAny(request.getConnID(), account,
                                  {static_cast<GameType>(request.gameType()), request.lowBet(), request.highBet(),
                                   request.minPlayers(), request.maxPlayers(), request.realMoney()});
  });
}

void ClientCommands::onClRemoveFromWaitList(Results&, ClRemoveFromWaitList& request) {
  house_.waitLists().stopWaiting(request.getConnID(), request.gameID());
}

void ClientCommands::onClAcceptInvite(Results&, ClAcceptInvite& request) {
  house_.acceptInvitation(request.getConnID(), request.gameID(), request.reserveID(), request.money());
}

void ClientCommands::onClRejectInvite(Results&, ClRejectInvite& request) {
  house_.waitLists().reject(request.getConnID(), request.gameID(), request.reserveID());
}

// Seats and chips

void ClientCommands::onClSitDown(Results&, ClSitDown& request) {
  house_.sitDown(request.getConnID(), request.getSeatID(), request.getMoney());
}

void ClientCommands::onClLeaveSeat(Results&, ClLeaveSeat& request) {
  house_.atTable(request.getConnID(), [&](Table& table, const Account&) { table.leaveSeat(request.getConnID()); });
}

void ClientCommands::onClBack(Results&, ClBack& request) {
  house_.atTable(request.getConnID(), [&](Table& table, const Account&) { table.comeBack(request.getConnID()); });
}

void ClientCommands::onClGetMoney(Results&, ClGetMoney& request) {
  house_.atTable(request.getConnID(),
                 [&](Table& table, const Account& account) { table.tellMoney(request.getConnID(), account.id); });
}

void ClientCommands::onClMoreMoney(Results&, ClMoreMoney& request) {
  house_.atTable(request.getConnID(),
                 [&](Table& table, const Account&) { table.bringMore(request.getConnID(), request.getMoney()); });
}

// The hand

void ClientCommands::onClTurnReceived(Results&, ClTurnReceived& notice) {
  house_.atTable(notice.getConnID(), [&](Table& table, const Account&) { table.acknowledgeTurn(notice.getConnID()); });
}

void ClientCommands::onClUserAction(Results&, ClUserAction& action) {
  house_.atTable(action.getConnID(), [&](Table& table, const Account&) {
    table.act(action.getConnID(), action.getActionCode(), action.validAmount() ? action.amount() : kZeroMoney);
  });
}

void ClientCommands::onClActionInAdvance(Results&, ClActionInAdvance& choice) {
  house_.atTable(choice.getConnID(), [&](Table& table, const Account&) {
    table.choose(choice.getConnID(), choice.actions(), choice.getActionMoney(), choice.onOff());
  });
}

void ClientCommands::onClChatMsg(Results&, ClChatMsg& message) {
  house_.atTable(message.getConnID(), [&](Table& table, const Account& account) {
    table.chat(message.getConnID(), account.name, message.getMessage(), message.style());
  });
}

void ClientCommands::onClScriptSetDealer(Results& results, ClScriptSetDealer& script) {
  house_.atTable(script.getConnID(), [&](Table& table, const Account&) {
    if (!table.settings().takesScripts) {
      answer<SrvAdminMsg>(results, script, "Script", "This table takes no scripts.", std::uint8_t{0});
    } else if (!table.script(script.getSeatID(), script.getMinimumPlayers(), script.getCards())) {
      answer<SrvAdminMsg>(results, script, "Script", "These are no cards of one deck.", std::uint8_t{0});
    }
  });
}

void ClientCommands::onClGetHighHand(Results& results, ClGetHighHand& request) {
  answer<SrvHighHandInfo>(results, request, house_.highHands().info(request.showFinished()));
}

// Hands that were played

void ClientCommands::onClGetHandHistory(Results& results, const ClGetHandHistory& request) {
  house_.forPlayer(request.getConnID(), [&](const Account& player) {
    HandHistory& history = house_.history();
    const std::uint32_t number = request.getData();
    answer<SrvRplHandHistory>(results, request,
                              request.isTourRequiest() ? history.latestOf(player, number)
                              : request.isGameData()   ? history.latestAt(player, number)
                                                       : history.textOf(player, number));
  });
}

// Accounts

void ClientMiscCommands::processCommand(PokerCommandTmpl<ClientMiscCmdProcessorType>& command) {
  // These handlers are given no results: what they answer is of the other family, and goes to the outbox.
  house_.outbox().run([&] { command.process(unused_, *this); });
}

void ClientMiscCommands::onClMakeNewAccount(ClMakeNewAccount& request) {
  house_.openAccount(request.getConnID(), request.accountInfo());
}

void ClientMiscCommands::onClMiscGetPromoInfo(ClMiscGetPromoInfo& request) {
  house_.forPlayer(request.getConnID(), [&](const Account& account) {
    const Gifts gifts = house_.bank().gifts(account.id, kMostGifts);
    PromoBucksInfo info;
    info.text = fmt::format("The house has given you {}.", gifts.all.toString());
    for (const Gift& gift : gifts.newest) {
      PromoBonus& bonus = info.bonuses.emplace_back();
      bonus.amount = gift.amount;
      bonus.promotion = gift.reason;
      bonus.released = true;
    }
    house_.outbox().add<SrvPromoInfo>(request.getConnID(), info);
  });
}

// Profiles

void ClientMiscCommands::answerProfile(const ConnectionID& client, const std::optional<MemberProfileInfo>& profile) {
  auto answer = make<SrvPlayerProfile>();
  if (profile) answer->info(*profile);
  ConnectionsSet to;
  to.insert(client);
  house_.outbox().put(std::move(answer), to);
}

void ClientMiscCommands::onClGetPlayerProfile(const ClGetPlayerProfile& request) {
  answerProfile(request.getConnID(), house_.members().profile(request.userName()));
}

void ClientMiscCommands::onClUpdatePlayerProfile(const ClUpdatePlayerProfile& request) {
  house_.forPlayer(request.getConnID(), [&](const Account& account) {
    answerProfile(request.getConnID(), house_.members().change(account.id, request.info()));
  });
}

void ClientMiscCommands::onClGetNewPicture(const ClGetNewPicture& request) {
  const Picture picture = house_.members().picture(request.userName()).value_or(Picture{request.userName(), "", ""});
  house_.outbox().add<SrvSendUserPic>(request.getConnID(), picture.userName, picture.image.data(),
                                      static_cast<unsigned>(picture.image.size()), picture.code);
}

void ClientMiscCommands::onClUpdateUserPic(const ClUpdateUserPic& request) {
  house_.forPlayer(request.getConnID(), [&](const Account& account) {
    const std::string_view image(request.getPicBuffer(), request.getPicSize());
    if (const auto profile = house_.members().changePicture(account.id, image)) {
      answerProfile(request.getConnID(), profile);
    } else {
      const std::string why =
          fmt::format("A picture is a PNG, JPEG or GIF file of {} KB at most.", Members::kLargestPicture / 1024);
      house_.outbox().add<SrvAdminMsg>(request.getConnID(), "Picture", why.c_str(), std::uint8_t{0});
    }
  });
}

// Hands that were played

void ClientMiscCommands::onClRplGetHandHistory(ClRplGetHandHistory& request) {
  house_.forPlayer(request.getConnID(), [&](const Account& player) {
    const ReplayRequestInfo& wanted = request.requestInfo();
    if (wanted.listOnly()) {
      house_.outbox().add<SrvRplHandHistoryList>(request.getConnID(), house_.history().numbers(player, wanted));
    } else {
      house_.outbox().add<SrvRplHandHistory>(request.getConnID(), house_.history().texts(player, wanted));
    }
  });
}

}  // namespace poker::holdem
