#include <examples/holdem/client/PlayerClient.h>

#include <algorithm>
#include <utility>

namespace poker::holdem {

namespace {

constexpr int kUsualBuyIn = 100;  // big blinds
constexpr int kSittingPause = 0;  // between two sittings: as long as the house says
constexpr std::string_view kSeatsAreDrawn = "The seats of a tournament are drawn.";

}  // namespace

PlayerClient::PlayerClient(asio::io_context& context, PlayerSettings settings, PlayerEvents& events)
    : HouseClient(context, settings, events), settings_(std::move(settings)), events_(events), tellOver_(context) {
  tellOfToursFirst(*this);
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

RealMoneyType PlayerClient::usualBuyIn() const {
  const ClientTableState& table = picture_.state();
  if (settings_.buyIn != kZeroMoney) return settings_.buyIn;
  return std::max(table.minBuyIn, std::min(table.bigBlind * kUsualBuyIn, table.maxBuyIn));
}

void PlayerClient::sitDown(SeatID wished) {
  if (isInTournament()) return events_.onRefused(kSeatsAreDrawn);
  settings_.sitsDown = true;
  if (wished.isValid()) settings_.seat = wished;
  const std::optional<SeatID> seat = settings_.seat.isValid() ? settings_.seat : freeSeat();
  if (seat) return send<ClSitDown>(*seat, usualBuyIn(), TourMoneyChooser::empty());
  if (settings_.waits) return wait();
  events_.onRefused("Every seat is taken.");
}

void PlayerClient::standUp() {
  if (isInTournament()) return events_.onRefused(kSeatsAreDrawn);
  settings_.sitsDown = false;
  if (isAtTable() && picture_.ownSeat() != nullptr) send<ClLeaveSeat>();
}

void PlayerClient::leave() {
  if (isInTournament()) {
    const bool mayTakePart = isRegistered_ || isRegistering_;
    if (mayTakePart && isLoggedOn() && !hasBegun() && !isTourOver_) send<ClTourUnregister>(settings_.tournamentID);
    return bye();
  }
  if (!isAtTable() || picture_.ownSeat() == nullptr) return bye();
  beginToLeave();
  standUp();
}

void PlayerClient::askForExtraMoney(ExtraMoneyRequest type, bool state) {
  send<ClGetExtraMoney>(type, state, 1u, settings_.tournamentID, TourMoneyChooser::empty());
}

void PlayerClient::wait() {
  if (isInTournament()) return events_.onRefused(kSeatsAreDrawn);
  settings_.sitsDown = true;
  isWaiting_ = true;
  send<ClAddToWaitList>(settings_.gameID);
}

void PlayerClient::stopWaiting() { send<ClRemoveFromWaitList>(settings_.gameID); }

void PlayerClient::acceptInvitation(RealMoneyType money) {
  if (!invitation_) return;
  isAccepting_ = settings_.sitsDown = true;
  send<ClAcceptInvite>(invitation_->gameID, invitation_->reserveID, money != kZeroMoney ? money : usualBuyIn());
}

void PlayerClient::rejectInvitation() {
  if (!invitation_) return;
  send<ClRejectInvite>(invitation_->gameID, invitation_->reserveID);
  endWaiting();
}

void PlayerClient::endWaiting() {
  isWaiting_ = isAccepting_ = false;
  invitation_.reset();
}

// Coming in

void PlayerClient::onEntered() {
  endWaiting();
  hasTable_ = isBrought_ = isRegistering_ = false;
  asksForTable_ = 0;
  status_.reset();
  if (!isInTournament()) {
    send<ClConnectGame>(settings_.gameID, "", "", nullptr, 0);
  } else if (settings_.registersForTour) {
    isRegistering_ = true;
    send<ClTourRegister>(settings_.tournamentID, TourMoneyChooser::empty(), settings_.tournamentPassword);
  } else {
    askForMyTable();
  }
  events_.onLoggedOn();
}

void PlayerClient::onSrvRequestPass(Results&, const SrvRequestPass&) {
  if (settings_.tablePassword.empty())
    return giveUp("This table is private: --table-password has to tell its password.");
  send<ClSendUserPass>(settings_.tablePassword.c_str());
}

void PlayerClient::onSrvPasswordError(Results&, const SrvPasswordError& refusal) { giveUp(refusal.reasonToStr()); }

void PlayerClient::onSrvTableState(Results&, SrvTableState& command) {
  picture_.apply(command);
  settings_.gameID = picture_.state().gameID;
  hasTable_ = true;
  settle();
  events_.onTableState();
  if (isInTournament()) return;
  if (isLeaving()) return leave();
  const bool isOnTheWay = isWaiting_ || invitation_;
  if (settings_.sitsDown && picture_.ownSeat() == nullptr && !isOnTheWay) sitDown();
}

// A tournament

void PlayerClient::askForMyTable() {
  // The server passes over who has no table there. Then the next thing that it says is the answer to the ping.
  ++asksForTable_;
  send<ClMoveMe2MyTable>(settings_.tournamentID, 0u);
  send<ClPing>();
}

void PlayerClient::onTakeSeat(const SrvTakeSeatInfo& command) {
  if (command.getTableInfo().tournamentID == settings_.tournamentID) isBrought_ = asksForTable_ != 0;
}

void PlayerClient::onSrvPing(Results&, SrvPing&) {
  if (asksForTable_ == 0) return;
  --asksForTable_;
  if (std::exchange(isBrought_, false)) return;
  if (status_ && !hasBegun()) return settle();  // there are no tables yet
  if (!isRegistered_) return giveUp("You do not play in this tournament, or not any more.");
  endTour();
}

void PlayerClient::onTourRegistration(const SrvTourRegisterResult& result) {
  using Reason = SrvTourRegisterResult::Reason;
  if (!isInTournament() || result.tourID() != settings_.tournamentID) return;
  isRegistering_ = false;
  switch (result.reason()) {
    case Reason::Registered:
      isRegistered_ = true;
      return settle();
    case Reason::AlreadyRegistered:
      isRegistered_ = true;
      return askForMyTable();
    case Reason::AlreadyStarted:  // with this player, maybe
      return askForMyTable();
    default:
      giveUp(result.reasonStr());
  }
}

void PlayerClient::onTourStatus(const SrvTourTourneyStatus& command) {
  if (!isInTournament() || command.tourID() != settings_.tournamentID) return;
  isRegistered_ = true;  // nobody else is told
  status_ = command.status();
  if (status_ == TOUR_NAMES::TourStatus::Finished) endTour();
}

void PlayerClient::onTourProtected(const SrvTourProtectionError& refusal) {
  if (!isAtTable()) giveUp(refusal.reasonStr());
}

void PlayerClient::onTourPlayerFinished(const SrvTourPlayerFinished&) {
  // It may be said of another tournament of the player; in this one there is a table then.
  if (hasBegun()) askForMyTable();
}

void PlayerClient::endTour() {
  if (std::exchange(isTourOver_, true)) return;
  tellOver_.in(std::chrono::milliseconds::zero(), [this] { events_.onTourOver(); });
}

// Waiting for a seat

void PlayerClient::onSrvWaitList(Results&, SrvWaitList& command) {
  isWaiting_ = false;
  invitation_ = {command.gameID(), command.reserveID()};
  events_.onInvitation(command);
}

void PlayerClient::onSrvAddToWaitListError(Results&, SrvAddToWaitListError&) {
  isWaiting_ = false;
  events_.onRefused("You cannot wait for a seat here.");
}

void PlayerClient::onSrvRemoveFromWaitListOk(Results&, SrvRemoveFromWaitListOk& command) {
  if (invitation_ && invitation_->gameID == command.gameID()) endWaiting();
  if (command.gameID() == settings_.gameID) isWaiting_ = false;
  events_.onWaitingOver(command.gameID());
}

void PlayerClient::onSrvRemoveFromWaitListError(Results&, SrvRemoveFromWaitListError&) {
  if (!isAccepting_) return events_.onRefused("You do not wait for a seat here.");
  endWaiting();
  events_.onRefused("The seat is not held for you any more.");
}

// The table

void PlayerClient::onSrvSitOk(Results&, const SrvSitOk& command) {
  endWaiting();
  picture_.apply(command);
  events_.onSeated(command.getSeatID());
}

void PlayerClient::onSrvSitError(Results&, SrvSitError& refusal) {
  isAccepting_ = false;
  const bool isSeatTaken = refusal.errorCode() == SrvErrorCode::SeatTaken;
  if (isSeatTaken && settings_.sitsDown && picture_.ownSeat() == nullptr) {
    // Somebody else was faster; the picture knows it by now.
    if (!settings_.seat.isValid() && freeSeat()) return sitDown();
    if (settings_.waits && !freeSeat()) return wait();
  }
  events_.onRefused(refusal.getErrorMsg(kSittingPause));
}

void PlayerClient::onSrvUserStateOnTable(Results&, SrvUserStateOnTable& command) {
  const ClientSeatState* seat = picture_.seat(command.getSeatID());
  const bool wasThere = seat != nullptr;
  const bool wasSeated = picture_.ownSeat() != nullptr;
  if (wasThere) before_ = *seat;
  picture_.apply(command);
  events_.onSeatChange(command, wasThere ? &before_ : nullptr);
  // Who is moved to another table of a tournament goes from this one first.
  if (!wasSeated || picture_.ownSeat() != nullptr || isInTournament()) return;
  events_.onUnseated();
  if (isLeaving()) bye();
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
