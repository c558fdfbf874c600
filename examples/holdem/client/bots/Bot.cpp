#include <examples/holdem/client/bots/Bot.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <utility>

namespace poker::holdem {

namespace {

constexpr std::array kGladLines = {"Thank you.", "Nice hand, me.", "Ship it.", "I had to.", "That was close."};
constexpr std::array kOtherLines = {"Well played.", "I knew it.", "Next time.", "How could you call that?",
                                    "Good game."};
constexpr std::uint64_t kHandsPerLine = 12;

/// A number that looks like drawn, and is always the same for the same two.
std::uint64_t mixed(std::uint64_t seed, std::uint64_t hand) {
  std::uint64_t x = seed * 0x9E3779B97F4A7C15u + hand;
  x = (x ^ x >> 30) * 0xBF58476D1CE4E5B9u;
  x = (x ^ x >> 27) * 0x94D049BB133111EBu;
  return x ^ x >> 31;
}

}  // namespace

Bot::Bot(asio::io_context& context, BotSettings settings, Ended ended)
    : settings_(std::move(settings)),
      ended_(std::move(ended)),
      character_(settings_.style, settings_.seed),
      pause_(context),
      tour_(settings_.player.tournamentID),
      client_(context, settings_.player, *this) {}

void Bot::onTableState() {
  if (client_.picture().state().handNumber != hand_) onHandBegins();
  const ClientSeatState* seat = client_.picture().ownSeat();
  if (seat == nullptr) return;
  if (seat->state == UserState::SittingOut) client_.send<ClBack>();
  onSeated(seat->seatID);
}

void Bot::beReady() {
  if (!settings_.readyFile.empty()) std::ofstream(settings_.readyFile) << "ready\n";
}

void Bot::onSeated(SeatID) {
  beReady();
  if (settings_.postsBlinds && !client_.isInTournament())
    client_.send<ClActionInAdvance>(actionBit(UserAction::Post), kZeroMoney, true);
}

void Bot::onUnseated() { client_.leave(); }

void Bot::onHandBegins() {
  const std::uint64_t number = client_.picture().state().handNumber;
  if (number != 0 && number != hand_) {
    ++hands_;
    if (settings_.followsTour) followTour();
  }
  hand_ = number;
  decisions_ = 0;
  willFold_ = false;
}

Decision Bot::decide(const NextTurnOptions& options) const {
  const ClientTableState& table = client_.picture().state();
  const ClientSeatState& seat = *client_.picture().ownSeat();
  Situation situation;
  situation.ownCards = seat.cards;
  situation.board = table.board;
  situation.pot = table.pot.total();
  situation.stack = seat.money;
  situation.bigBlind = table.bigBlind;
  situation.opponents = 0;
  for (const ClientSeatState& other : table.seats) {
    situation.pot += other.bet;
    const bool isIn = other.state == UserState::Playing || other.state == UserState::AllIn;
    if (isIn && other.seatID != seat.seatID) ++situation.opponents;
  }
  situation.options = &options;
  situation.hand = hands_;
  situation.decision = decisions_;
  situation.isTournament = client_.isInTournament();
  return character_.decide(situation);
}

void Bot::onAction(const SrvUserActionNotify& command, const ClientSeatState&) {
  const UserAction action = command.getActionCode();
  const bool isBet = action == UserAction::Bet || action == UserAction::Raise || action == UserAction::AllIn;
  if (isBet && settings_.usesAdvance && settings_.style == Style::Tight) foldInAdvance();
}

void Bot::foldInAdvance() {
  const TablePicture& picture = client_.picture();
  const ClientSeatState* seat = picture.ownSeat();
  if (seat == nullptr || seat->state != UserState::Playing || willFold_) return;
  const RealMoneyType price = picture.highestBet() - seat->bet;
  if (price <= kZeroMoney) return;
  NextTurnOptions options;
  options.addFoldOption();
  options.addOption(price < seat->money ? UserAction::Call : UserAction::AllIn, std::min(price, seat->money));
  // Whether the box or the turn is faster must make no difference, so the bot stands by it.
  willFold_ = decide(options).action == UserAction::Fold;
  if (willFold_) client_.send<ClActionInAdvance>(actionBit(UserAction::Fold), kZeroMoney, true);
}

void Bot::onTurn(const NextTurnOptions& options, std::chrono::seconds) {
  options_ = options;
  if (settings_.pause == std::chrono::milliseconds::zero()) return answer();
  pause_.in(settings_.pause, [this] { answer(); });
}

void Bot::answer() {
  // The turn may be over by now, or the connection.
  if (!client_.isAtTable() || client_.picture().ownSeat() == nullptr) return;
  if (client_.picture().state().turnSeat != client_.picture().state().ownSeat) return;
  if (willFold_) client_.send<ClActionInAdvance>(actionBit(UserAction::Fold), kZeroMoney, false);
  Decision decision = decide(options_);
  if (willFold_ && options_.options().contains(UserAction::Fold)) decision = {UserAction::Fold, kZeroMoney};
  willFold_ = false;
  ++decisions_;
  client_.act(decision.action, decision.amount);
}

void Bot::onShowDown(const SrvTUShowDown& command) {
  pause_.cancel();
  const ClientTableState& table = client_.picture().state();
  if (!settings_.chats || !table.ownSeat.isValid()) return;
  const std::uint64_t drawn = mixed(settings_.seed, hands_);
  if (drawn % kHandsPerLine != 0) return;
  const auto& lines = command.wins(table.ownSeat) > kZeroMoney ? kGladLines : kOtherLines;
  client_.chat(lines[drawn / kHandsPerLine % lines.size()]);
}

void Bot::onSeatChange(const SrvUserStateOnTable& command, const ClientSeatState*) {
  const bool isOwn = command.getSeatID() == client_.picture().state().ownSeat;
  // It was too slow once.
  if (isOwn && command.state() == UserState::SittingOut && command.getMoney() > kZeroMoney) client_.send<ClBack>();
}

void Bot::onOutOfMoney(const OutOfMoney&) {
  if (client_.isInTournament()) {
    // Without one it is out as soon as the table has waited.
    if (rebuysDone_ < settings_.rebuys) {
      ++rebuysDone_;
      client_.askForExtraMoney(ExtraMoneyRequest::Rebuy);
    }
    return;
  }
  if (rebuysDone_ == settings_.rebuys) return client_.leave();
  ++rebuysDone_;
  const RealMoneyType most = client_.picture().state().maxBuyIn;
  const RealMoneyType wish = settings_.rebuy != kZeroMoney ? settings_.rebuy : settings_.player.buyIn;
  client_.send<ClMoreMoney>(wish != kZeroMoney ? std::min(wish, most) : most);
}

void Bot::onWaitingOver(std::uint32_t) {
  // There will be no seat: the table is closed.
  if (client_.picture().ownSeat() == nullptr) client_.leave();
}

// A tournament

void Bot::onLoggedOn() { asksForTour_ = asksForAddOn_ = false; }

void Bot::onTourRegistration(const SrvTourRegisterResult&) {
  if (client_.isRegistered()) beReady();
}

void Bot::followTour() {
  // The server has one whole picture at a time on its way; a connection that is new may find another server there.
  if (!std::exchange(asksForTour_, true)) {
    tour_ = TourPicture(settings_.player.tournamentID);
    client_.send<ClGetMultiInitializeInfo>(tour_.tournamentID());
  } else if (tour_.isWhole()) {
    tour_.askForChanges(client_);
  }
}

void Bot::wantAddOn() {
  // When there is one is the tournament's business: until then each request fails, and costs nothing.
  if (!settings_.addsOn || hasAddedOn_ || isAddOnOver_ || !client_.isAtTable()) return;
  if (!std::exchange(asksForAddOn_, true)) client_.askForExtraMoney(ExtraMoneyRequest::AddOn);
}

void Bot::onExtraMoney(const SrvGetExtraMoneyReply& reply) {
  using Reason = SrvGetExtraMoneyReply::Reason;
  if (reply.getType() != ExtraMoneyRequest::AddOn) return;
  const bool isAnswer = std::exchange(asksForAddOn_, false);
  hasAddedOn_ = hasAddedOn_ || reply.getReason() == Reason::Done;
  isAddOnOver_ = reply.getReason() == Reason::TooLate || reply.getReason() == Reason::PrizeAwarded ||
                 reply.getReason() == Reason::NotEnoughMoney;
  if (!isAnswer && reply.showAddonBtn()) wantAddOn();
}

void Bot::onRefused(std::string_view why) {
  // Without a seat, or without chips, it has nothing to do here. For a seat that it never had this is a failure.
  if (client_.picture().ownSeat() == nullptr) refusal_ = why;
  client_.leave();
}

void Bot::onEnd(PlayerEnd end, std::string_view why) {
  pause_.cancel();
  const Ended ended = std::move(ended_);
  if (end == PlayerEnd::Left && !refusal_.empty()) {
    const std::string refusal = refusal_;
    ended(PlayerEnd::Refused, refusal);
  } else {
    ended(end, why);
  }
}

}  // namespace poker::holdem
