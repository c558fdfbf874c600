#include <examples/holdem/client/PlayerClient.h>

#include <examples/holdem/shared/Protocol.h>

#include <algorithm>
#include <exception>

namespace poker::holdem {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kFirstPause = 200ms;
constexpr std::chrono::milliseconds kLongestPause = 3s;
constexpr int kUsualBuyIn = 100;  // big blinds
constexpr int kSittingPause = 0;  // between two sittings: as long as the house says

std::shared_ptr<const SessionOptions> optionsFrom(const PlayerSettings& settings) {
  auto options = std::make_shared<SessionOptions>(SessionOptions::forClient());
  options->limits.keepAlive = settings.keepAlive;
  return options;
}

}  // namespace

/// Between a session and its player. It belongs to the session, which may live on after the player is gone.
class PlayerClient::Link final : public SessionEvents {
 public:
  explicit Link(PlayerClient& player) : player_(&player) {}
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

  PlayerClient* player_;
};

PlayerClient::PlayerClient(asio::io_context& context, PlayerSettings settings, PlayerEvents& events)
    : context_(context),
      settings_(std::move(settings)),
      events_(events),
      options_(optionsFrom(settings_)),
      retry_(context),
      pause_(kFirstPause) {
  dispatcher_.registerSrvCmdProcessor(*this, true);
}

PlayerClient::~PlayerClient() {
  if (link_ != nullptr) link_->cut();
  if (session_ != nullptr) session_->close();
}

// The connection

void PlayerClient::start() { open(); }

void PlayerClient::open() {
  link_ = std::make_shared<Link>(*this);
  session_ = TcpSession::connect(context_, settings_.server.host, settings_.server.port, options_, *link_);
  session_->hostData = link_;
}

void PlayerClient::onOpen() { send<ClHandShake>(kProtocolVersion); }

void PlayerClient::onClosed(CloseReason reason) {
  session_.reset();
  link_.reset();
  isAtTable_ = false;
  if (leaving_) return end(PlayerEnd::Left, {});
  if (draining_) return end(PlayerEnd::Drained, {});
  if (!refusal_.empty()) return end(PlayerEnd::Refused, refusal_);
  if (!trouble_.empty()) return end(PlayerEnd::Lost, trouble_);
  if (attempts_ < settings_.reconnects && (wasAtTable_ || reason != CloseReason::ConnectFailed)) {
    ++attempts_;
    events_.onReconnecting(pause_);
    retry_.in(pause_, [this] { open(); });
    pause_ = std::min(pause_ * 2, kLongestPause);
    return;
  }
  const std::string server = settings_.server.toString();
  if (reason == CloseReason::ConnectFailed && !wasAtTable_) {
    return end(PlayerEnd::NoConnection, server + ": no connection to the server");
  }
  end(PlayerEnd::Lost, server + ": the connection is lost (" + std::string(toText(reason)) + ')');
}

void PlayerClient::giveUp(std::string_view why) {
  refusal_ = why.empty() ? "The server has refused the player." : why;
  session_->closeAfter(*make<ClBye>());
}

void PlayerClient::end(PlayerEnd how, std::string_view why) {
  if (std::exchange(ended_, true)) return;
  const std::string reason(why);  // the listener may destroy this object
  events_.onEnd(how, reason);
}

void PlayerClient::breakConnection() {
  if (session_ != nullptr) session_->close();
}

// What the player wants

void PlayerClient::act(UserAction action, RealMoneyType amount) {
  if (amount == kZeroMoney) {
    send<ClUserAction>(action);
  } else {
    send<ClUserAction>(action, amount);
  }
}

std::optional<SeatID> PlayerClient::freeSeat() const {
  for (std::uint8_t seat = 0; seat < picture_.state().maxSeats; ++seat) {
    if (picture_.seat(seat) == nullptr) return SeatID(seat);
  }
  return std::nullopt;
}

void PlayerClient::sitDown(SeatID wished) {
  settings_.sitsDown = true;
  if (wished.isValid()) settings_.seat = wished;
  const std::optional<SeatID> seat = settings_.seat.isValid() ? settings_.seat : freeSeat();
  if (!seat) return events_.onRefused("Every seat is taken.");
  const ClientTableState& table = picture_.state();
  RealMoneyType money = settings_.buyIn;
  if (money == kZeroMoney) money = std::max(table.minBuyIn, std::min(table.bigBlind * kUsualBuyIn, table.maxBuyIn));
  send<ClSitDown>(*seat, money, TourMoneyChooser::empty());
}

void PlayerClient::standUp() {
  settings_.sitsDown = false;
  if (isAtTable_ && picture_.ownSeat() != nullptr) send<ClLeaveSeat>();
}

void PlayerClient::leave() {
  if (!isAtTable_ || picture_.ownSeat() == nullptr) return bye();
  leaving_ = true;
  standUp();
}

void PlayerClient::bye() {
  leaving_ = true;
  if (session_ != nullptr) {
    session_->closeAfter(*make<ClBye>());
  } else {
    retry_.in(0ms, [this] { end(PlayerEnd::Left, {}); });
  }
}

// Coming in

bool PlayerClient::processCommand(PokerCommandTmpl<SrvCmdProcessorType>& command) {
  command.process(results_, *this);
  return true;
}

void PlayerClient::onSrvHandShaked(Results&, SrvHandShaked&) {
  session_->setState(SessionState::ShakenHands);
  if (!settings_.registers) return logOn();
  CommonTypes::NewAccountInfo account;
  account.userName = settings_.name;
  account.password = settings_.password;
  RawDataHolder nothing;
  send<ClMakeNewAccount>(account, nothing, Int2StringSer());
}

void PlayerClient::logOn() {
  settings_.registers = false;
  send<ClLogon>(settings_.name.c_str(), settings_.password.c_str(), CommonTypes::HardwareInfo(), nullptr, 0, false,
                false);
}

void PlayerClient::onSrvRegistrationOk(Results&, SrvRegistrationOk&) { logOn(); }

void PlayerClient::onSrvRegistrationFail(Results&, SrvRegistrationFail& refusal) {
  if (refusal.result() != CommonTypes::UserNameTaken) return giveUp(refusal.errorMsg());
  logOn();
}

void PlayerClient::onSrvLogonOk(Results&, SrvLogonOk&) {
  session_->setState(SessionState::LoggedOn);
  if (!settings_.program.empty()) send<ClBotAppEnter>(settings_.program.c_str());
  send<ClConnectGame>(settings_.gameID, "", "", nullptr, 0);
}

void PlayerClient::onSrvLogonError(Results&, SrvLogonError& refusal) { giveUp(refusal.getGUIMessage()); }

void PlayerClient::onSrvRequestPass(Results&, const SrvRequestPass&) {
  send<ClSendUserPass>(settings_.tablePassword.c_str());
}

void PlayerClient::onSrvPasswordError(Results&, const SrvPasswordError& refusal) { giveUp(refusal.reasonToStr()); }

void PlayerClient::onSrvTableState(Results&, SrvTableState& command) {
  picture_.apply(command);
  isAtTable_ = wasAtTable_ = true;
  attempts_ = 0;
  pause_ = kFirstPause;
  events_.onTableState();
  if (leaving_) return leave();
  if (settings_.sitsDown && picture_.ownSeat() == nullptr) sitDown();
}

// What may come at any time

void PlayerClient::onSrvBusy(Results&, const SrvBusy&) {
  if (attempts_ >= settings_.reconnects) refusal_ = "The server has no room for another connection now.";
}

void PlayerClient::onNotAvail(Results&, ServiceNotAvailable& notice) {
  refusal_ = "The server has moved to " + notice.newServer() + '.';
}

void PlayerClient::onSrvConnectError(Results&, SrvConnectError&) { refusal_ = "The server refuses the connection."; }

void PlayerClient::onSrvErrorDisconnected(Results&, SrvErrorDisconnected& notice) {
  const SrvErrorDisconnected::ErrorCode code = notice.getErrorCode();
  // Of these two the player is not the cause: it is as if the connection had been lost.
  if (code == SrvErrorDisconnected::DisconnectConn || code == SrvErrorDisconnected::InternalError) return;
  refusal_ = notice.errCodeToVisualString();
}

void PlayerClient::onSrvMaintenance(Results&, const SrvMaintenance& notice) {
  if (notice.getID() == kMaintenanceBegins) draining_ = true;
  events_.onNotice(notice.getMessage());
}

void PlayerClient::onSrvNewClientVersionAvail(Results&, const SrvNewClientVersionAvail& notice) {
  events_.onNotice(notice.getMessage());
  if (notice.type() == SrvNewClientVersionAvail::ForcedUpgrade) refusal_ = "This program is too old for the server.";
}

void PlayerClient::onSrvAdminMsg(Results&, SrvAdminMsg& notice) { events_.onNotice(notice.message()); }

// The table

void PlayerClient::onSrvSitOk(Results&, const SrvSitOk& command) {
  picture_.apply(command);
  events_.onSeated(command.getSeatID());
}

void PlayerClient::onSrvSitError(Results&, SrvSitError& refusal) {
  // Somebody else was faster; the picture knows it by now.
  const bool mayTryAgain = settings_.sitsDown && !settings_.seat.isValid() && picture_.ownSeat() == nullptr;
  if (refusal.errorCode() == SrvErrorCode::SeatTaken && mayTryAgain && freeSeat()) return sitDown();
  events_.onRefused(refusal.getErrorMsg(kSittingPause));
}

void PlayerClient::onSrvUserStateOnTable(Results&, SrvUserStateOnTable& command) {
  const ClientSeatState* seat = picture_.seat(command.getSeatID());
  const bool wasThere = seat != nullptr;
  const bool wasSeated = picture_.ownSeat() != nullptr;
  if (wasThere) before_ = *seat;
  picture_.apply(command);
  events_.onSeatChange(command, wasThere ? &before_ : nullptr);
  if (!wasSeated || picture_.ownSeat() != nullptr) return;
  events_.onUnseated();
  if (leaving_) bye();
}

void PlayerClient::onSrvMoney(Results&, SrvMoney& command) { events_.onMoney(command); }

void PlayerClient::onOutOfMoney(Results&, OutOfMoney& command) { events_.onOutOfMoney(command); }

void PlayerClient::onSrvUpdateHintText(Results&, SrvUpdateHintText& command) { picture_.apply(command); }

void PlayerClient::onSrvGameStart(Results&, SrvGameStart& command) {
  picture_.apply(command);
  events_.onHandBegins();
}

void PlayerClient::onMoveDealChip(Results&, SrvMoveDealChip& command) {
  picture_.apply(command);
  events_.onDealer();
}

void PlayerClient::onUserActionNotify(Results&, SrvUserActionNotify& command) {
  const ClientSeatState* seat = picture_.seat(command.getSeatID());
  if (seat == nullptr) return;
  before_ = *seat;
  picture_.apply(command);
  events_.onAction(command, before_);
}

void PlayerClient::onSrvTUCardDeal(Results&, SrvCardDeal& command) {
  picture_.apply(command);
  events_.onCardsDealt(command);
}

void PlayerClient::onSrvUserTurn(Results&, SrvUserTurn& command) {
  picture_.apply(command);
  const std::chrono::seconds time(command.turnReplyTimeout());
  const bool isOwn = command.isNotify() && command.getSeatID() == picture_.state().ownSeat;
  if (isOwn) send<ClTurnReceived>();
  events_.onTurnOf(command.getSeatID(), time);
  if (isOwn) events_.onTurn(command.getTurns(), time);
}

void PlayerClient::onBetRoundComplete(Results&, SrvBetRoundComplete& command) {
  picture_.apply(command);
  events_.onRoundOver(command);
}

void PlayerClient::onSrvPotCardDeal(Results&, SrvPotCardDeal& command) {
  picture_.apply(command);
  events_.onBoard(command);
}

void PlayerClient::onSrvShowPlayerCards(Results&, SrvShowPlayerCards& command) {
  picture_.apply(command);
  events_.onCardsShown(command);
}

void PlayerClient::onSrvTUShowDown(Results&, SrvTUShowDown& command) {
  events_.onShowDown(command);
  picture_.apply(command);
}

void PlayerClient::onSrvChatMsg(Results&, SrvChatMsg& command) { events_.onChat(command); }

}  // namespace poker::holdem
