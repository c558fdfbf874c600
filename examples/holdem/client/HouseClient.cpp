#include <examples/holdem/client/HouseClient.h>

#include <examples/holdem/shared/Protocol.h>

#include <algorithm>
#include <exception>

namespace poker::holdem {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kFirstPause = 200ms;
constexpr std::chrono::milliseconds kLongestPause = 3s;

std::shared_ptr<const SessionOptions> optionsFrom(const VisitorSettings& settings) {
  auto options = std::make_shared<SessionOptions>(SessionOptions::forClient());
  options->limits.keepAlive = settings.keepAlive;
  return options;
}

std::string_view howLost(CloseReason reason) {
  switch (reason) {
    case CloseReason::ConnectFailed:
      return "and cannot be made again";
    case CloseReason::ByPeer:
      return "the server has closed it";
    case CloseReason::Idle:
      return "the server was silent";
    default:
      return toText(reason);
  }
}

}  // namespace

/// Between a session and its player. It belongs to the session, which may live on after the player is gone.
class HouseClient::Link final : public SessionEvents {
 public:
  explicit Link(HouseClient& player) : player_(&player) {}
  void cut() { player_ = nullptr; }

 private:
  void onOpen(TcpSession&) override {
    if (player_ != nullptr) player_->onOpen();
  }
  void onCommand(TcpSession&, CommandHandle<> command) override {
    if (player_ != nullptr) player_->dispatcher_.dispatchCommand(*command);
  }
  void onError(TcpSession&, CloseReason, const DecodeError& error) override {
    if (player_ != nullptr) player_->trouble_ = error.toString();
  }
  void onHandlerFailed(TcpSession&, std::exception_ptr failure) override {
    if (player_ == nullptr) return;
    try {
      std::rethrow_exception(failure);
    } catch (const std::exception& error) {
      player_->trouble_ = error.what();
    } catch (...) {
      player_->trouble_ = "a handler has failed";
    }
  }
  void onKeepAliveDue(TcpSession& session) override {
    if (player_ != nullptr) session.send(*make<ClKeepAlive>(++player_->keepAlives_));
  }
  void onClosed(TcpSession&, CloseReason reason) override {
    if (player_ != nullptr) player_->onClosed(reason);
  }
  void onBytes(const TcpSession&, FrameDirection direction, std::span<const std::uint8_t> frame) override {
    if (player_ != nullptr && player_->observer_) player_->observer_(direction, frame);
  }

  HouseClient* player_;
};

HouseClient::HouseClient(asio::io_context& context, VisitorSettings settings, HouseEvents& events)
    : context_(context),
      settings_(std::move(settings)),
      events_(events),
      tourCommands_(events, [this](std::uint32_t tourID) { send<ClBigInfoSent>(tourID); }),
      options_(optionsFrom(settings_)),
      retry_(context),
      pause_(kFirstPause) {
  dispatcher_.registerSrvCmdProcessor(*this, true);
  dispatcher_.registerSrvTourCmdProcessor(tourCommands_, true);
}

HouseClient::~HouseClient() {
  if (link_ != nullptr) link_->cut();
  if (session_ != nullptr) session_->close();
}

// The connection

void HouseClient::start() { open(); }

void HouseClient::open() {
  link_ = std::make_shared<Link>(*this);
  session_ = TcpSession::connect(context_, settings_.server.host, settings_.server.port, options_, *link_);
  session_->hostData = link_;
}

void HouseClient::onOpen() { send<ClHandShake>(kProtocolVersion); }

void HouseClient::settle() {
  isSettled_ = wasSettled_ = true;
  attempts_ = 0;
  pause_ = kFirstPause;
}

void HouseClient::onClosed(CloseReason reason) {
  session_.reset();
  link_.reset();
  isSettled_ = false;
  if (leaving_) return end(PlayerEnd::Left, {});
  if (draining_) return end(PlayerEnd::Drained, {});
  if (!refusal_.empty()) return end(PlayerEnd::Refused, refusal_);
  if (!trouble_.empty()) return end(PlayerEnd::Lost, trouble_);
  if (attempts_ < settings_.reconnects && (wasSettled_ || reason != CloseReason::ConnectFailed)) {
    ++attempts_;
    events_.onReconnecting(pause_);
    retry_.in(pause_, [this] { open(); });
    pause_ = std::min(pause_ * 2, kLongestPause);
    return;
  }
  const std::string server = settings_.server.toString();
  if (reason == CloseReason::ConnectFailed && !wasSettled_) {
    return end(PlayerEnd::NoConnection, server + ": no connection to the server");
  }
  end(PlayerEnd::Lost, server + ": the connection is lost (" + std::string(howLost(reason)) + ')');
}

void HouseClient::giveUp(std::string_view why) {
  refusal_ = why.empty() ? "The server has refused the player." : why;
  session_->closeAfter(*make<ClBye>());
}

void HouseClient::end(PlayerEnd how, std::string_view why) {
  if (std::exchange(ended_, true)) return;
  const std::string reason(why);  // the listener may destroy this object
  events_.onEnd(how, reason);
}

void HouseClient::bye() {
  leaving_ = true;
  if (session_ != nullptr) {
    session_->closeAfter(*make<ClBye>());
  } else {
    retry_.in(0ms, [this] { end(PlayerEnd::Left, {}); });
  }
}

void HouseClient::breakConnection() {
  if (session_ != nullptr) session_->close();
}

// Coming in

bool HouseClient::processCommand(PokerCommandTmpl<SrvCmdProcessorType>& command) {
  command.process(results_, *this);
  return true;
}

void HouseClient::onSrvHandShaked(Results&, SrvHandShaked&) {
  session_->setState(SessionState::ShakenHands);
  if (!settings_.registers) return logOn();
  CommonTypes::NewAccountInfo account;
  account.userName = settings_.name;
  account.password = settings_.password;
  RawDataHolder nothing;
  send<ClMakeNewAccount>(account, nothing, Int2StringSer());
}

void HouseClient::logOn() {
  settings_.registers = false;
  send<ClLogon>(settings_.name.c_str(), settings_.password.c_str(), CommonTypes::HardwareInfo(), nullptr, 0, false,
                false);
}

void HouseClient::onSrvRegistrationOk(Results&, SrvRegistrationOk&) { logOn(); }

void HouseClient::onSrvRegistrationFail(Results&, SrvRegistrationFail& refusal) {
  if (refusal.result() == CommonTypes::UserNameTaken) return logOn();
  // The server says no more than that it could not be done.
  giveUp(std::string(refusal.errorMsg()) + " A name has 2 to 20 letters, digits, blanks, - _ or .");
}

void HouseClient::onSrvLogonOk(Results&, SrvLogonOk&) {
  session_->setState(SessionState::LoggedOn);
  if (!settings_.program.empty()) send<ClBotAppEnter>(settings_.program.c_str());
  onEntered();
}

void HouseClient::onEntered() {
  settle();
  events_.onLoggedOn();
}

void HouseClient::onSrvLogonError(Results&, SrvLogonError& refusal) { giveUp(refusal.getGUIMessage()); }

// What may come at any time

void HouseClient::onSrvBusy(Results&, const SrvBusy&) {
  if (attempts_ >= settings_.reconnects) refusal_ = "The server has no room for another connection now.";
}

void HouseClient::onNotAvail(Results&, ServiceNotAvailable& notice) {
  refusal_ = "The server has moved to " + notice.newServer() + '.';
}

void HouseClient::onSrvConnectError(Results&, SrvConnectError&) { refusal_ = "The server refuses the connection."; }

void HouseClient::onSrvErrorDisconnected(Results&, SrvErrorDisconnected& notice) {
  const SrvErrorDisconnected::ErrorCode code = notice.getErrorCode();
  // Of these two the player is not the cause: it is as if the connection had been lost.
  if (code == SrvErrorDisconnected::DisconnectConn || code == SrvErrorDisconnected::InternalError) return;
  refusal_ = code == SrvErrorDisconnected::Reconnect ? "You have logged on once more, somewhere else."
                                                     : notice.errCodeToVisualString();
}

void HouseClient::onSrvMaintenance(Results&, const SrvMaintenance& notice) {
  if (notice.getID() == kMaintenanceBegins) draining_ = true;
  events_.onNotice(notice.getMessage());
}

void HouseClient::onSrvNewClientVersionAvail(Results&, const SrvNewClientVersionAvail& notice) {
  events_.onNotice(notice.getMessage());
  if (notice.type() == SrvNewClientVersionAvail::ForcedUpgrade) refusal_ = "This program is too old for the server.";
}

void HouseClient::onSrvAdminMsg(Results&, SrvAdminMsg& notice) { events_.onAdminMessage(notice); }

// The lobby

void HouseClient::onSrvServerInfo(Results&, SrvServerInfo& command) { events_.onTables(command); }

void HouseClient::onSrvServerCountersInfo(Results&, SrvServerCountersInfo& command) { events_.onCounters(command); }

void HouseClient::onSrvNews(Results&, SrvNews& command) { events_.onNews(command); }

void HouseClient::onSrvGameInfo(Results&, SrvGameInfo& command) { events_.onTableDetails(command); }

void HouseClient::onSrvOneUser(Results&, SrvOneUser& command) { events_.onOneUser(command); }

void HouseClient::onSrvAddToWaitListOk(Results&, SrvAddToWaitListOk& command) { events_.onWaiting(command.gameID()); }

void HouseClient::onSrvAddToWaitListError(Results&, SrvAddToWaitListError&) {
  events_.onRefused("You cannot wait for a seat there.");
}

void HouseClient::onSrvRemoveFromWaitListOk(Results&, SrvRemoveFromWaitListOk& command) {
  events_.onWaitingOver(command.gameID());
}

void HouseClient::onSrvRemoveFromWaitListError(Results&, SrvRemoveFromWaitListError&) {
  events_.onRefused("You do not wait there, and no seat is held for you.");
}

void HouseClient::onSrvWaitList(Results&, SrvWaitList& command) { events_.onInvitation(command); }

// Players, promotions, history

void HouseClient::onSrvPlayerProfile(Results&, const SrvPlayerProfile& command) { events_.onProfile(command); }

void HouseClient::onSrvSendUserPic(Results&, const SrvSendUserPic& command) { events_.onPicture(command); }

void HouseClient::onSrvHighHandInfo(Results&, SrvHighHandInfo& command) { events_.onPromotions(command); }

void HouseClient::onSrvPromoInfo(Results&, const SrvPromoInfo& command) { events_.onBonuses(command); }

void HouseClient::onSrvPromoNotify(Results&, const SrvPromoNotify& command) { events_.onPromotion(command); }

void HouseClient::onSrvUserWonPromotion(Results&, const SrvUserWonPromotion& command) {
  events_.onPromotionWon(command);
}

void HouseClient::onSrvRplHandHistory(Results&, const SrvRplHandHistory& command) { events_.onHandTexts(command); }

void HouseClient::onSrvRplHandHistoryList(Results&, const SrvRplHandHistoryList& command) {
  events_.onHandNumbers(command);
}

}  // namespace poker::holdem
