#include <inspect/CommandText.h>
#include <inspect/Joined.h>
#include <inspect/hands/HandAudit.h>
#include <inspect/hands/HandRank.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <utility>

namespace poker {

namespace {

bool hasFace(const Card& card) { return card.visibility() != Card::Visibility::Hidden; }
bool sameFace(const Card& a, const Card& b) { return a.suit() == b.suit() && a.rank() == b.rank(); }
bool isRealCard(const Card& card) {
  const auto suit = static_cast<std::uint32_t>(card.suit());
  const auto rank = static_cast<std::uint32_t>(card.rank());
  return suit >= 1 && suit <= 4 && rank >= 1 && rank <= 14;
}

std::size_t holeCards(GameType game) {
  switch (game) {
    case GameType::Omaha:
    case GameType::OmahaHiLo:
      return 4;
    default:
      return 2;
  }
}

/// Whether `seat` lies strictly between two others, clockwise.
bool isBetween(const SeatID& from, const SeatID& seat, const SeatID& to) {
  const auto steps = [&](const SeatID& end) {
    const int distance = end.value() - from.value();
    return distance > 0 ? distance : distance + 256;
  };
  return seat != from && steps(seat) < steps(to);
}

}  // namespace

std::string seatText(const SeatID& seat) { return seat.isValid() ? "seat " + std::to_string(seat.value()) : "no seat"; }

std::string actionText(UserAction action) {
  switch (action) {
    case UserAction::NoAction:
      return "gets chips back";
    case UserAction::SmallBlind:
      return "posts the small blind";
    case UserAction::BigBlind:
      return "posts the big blind";
    case UserAction::Post:
      return "posts";
    case UserAction::Ante:
      return "posts the ante";
    case UserAction::Check:
      return "checks";
    case UserAction::Bet:
      return "bets";
    case UserAction::Call:
      return "calls";
    case UserAction::Raise:
    case UserAction::BigRaise:
      return "raises";
    case UserAction::Fold:
      return "folds";
    case UserAction::AllIn:
      return "goes all-in";
    default:
      return joined("does ", std::to_string(actionBit(action)));
  }
}

void HandAudit::report(const SaidAt& at, std::string text, bool isLeak) {
  faults_.push_back({at, std::move(text), isLeak});
}

// The beginning

void HandAudit::begin(const SaidAt& at, std::uint64_t lastNumber) {
  if (hand_.number() == 0) {
    report(at, "the hand has no number");
  } else if (hand_.number() <= lastNumber) {
    report(at, joined("the hand's number goes back: the last one was ", std::to_string(lastNumber)));
  }
  if (hand_.players().size() < 2) report(at, "the hand begins with fewer than two players");
  for (const HandView::Player& player : hand_.players()) {
    if (player.start && *player.start <= kZeroMoney) {
      report(at, joined(seatText(player.seat), " plays with a stack of ", moneyText(*player.start)));
    }
  }
}

void HandAudit::join(const SaidAt& at, const ClientTableState& state) {
  bigPosted_ = true;
  asked_ = state.turnSeat;
  for (const HandView::Player& player : hand_.players()) {
    const bool isHis = player.seat == hand_.viewer();
    // What was turned up is shown to all; whether that was in order, is for those to say who saw it.
    if (!isHis && !player.shown) hiddenCards(at, player.seat, player.cards);
  }
}

void HandAudit::follow(const HandView& last) {
  if (!last.isWhole() || !last.bigBlindSeat().isValid()) return;
  last_ = {last.button(), last.smallBlindSeat(), last.bigBlindSeat(), last.players().size()};
}

void HandAudit::check(const SaidAt& at, const SrvMoveDealChip& command) {
  if (hand_.phase() != HandView::Phase::Begun || hand_.button().isValid()) {
    fail(at, joined("the button moves to ", seatText(command.getSeatID()), " in the middle of the hand"));
  }
}

void HandAudit::check(const SaidAt& at, const SrvPostBlind& command) {
  if (hand_.phase() != HandView::Phase::Begun) {
    report(at, joined("a blind falls due at ", seatText(command.getSeatID()), " after the cards are dealt"));
  }
  due_ = command.getSeatID();
  dueBlind_ = command.blind();
}

void HandAudit::post(const SaidAt& at, const SrvUserActionNotify& command, const HandView::Player& player) {
  const UserAction action = command.getActionCode();
  const std::string who = joined(seatText(player.seat), ' ', actionText(action));
  if (hand_.phase() != HandView::Phase::Begun) return fail(at, joined(who, " after the cards are dealt"));
  const bool isSmall = action == UserAction::SmallBlind;
  const bool isBig = action == UserAction::BigBlind;
  if ((isSmall && std::exchange(smallPosted_, true)) || (isBig && std::exchange(bigPosted_, true))) {
    return fail(at, joined(who, ", which is posted already"));
  }
  if (due_ != player.seat || dueBlind_ != actionBit(action)) report(at, joined(who, ", which was not due"));
  due_ = SeatID();

  const RealMoneyType live = command.getTableMoney() - player.bet;
  const RealMoneyType put = player.stack ? *player.stack - command.getFreeMoney() : live;
  const RealMoneyType dead = put - live;
  const auto isDue = [&](const RealMoneyType& paid, const RealMoneyType& due) {
    return paid == due || (paid < due && paid > kZeroMoney && command.getFreeMoney() == kZeroMoney);
  };
  if (hand_.limit() != LimitType::None && (isSmall || isBig)) {
    const RealMoneyType& due = isSmall ? hand_.smallBlind() : hand_.bigBlind();
    if (!isDue(live, due))
      return fail(at, joined(who, " of ", moneyText(live), ", which is ", moneyText(due), " here"));
  }
  if (hand_.limit() != LimitType::None && action == UserAction::Post) {
    const bool isLive = live == kZeroMoney || isDue(live, hand_.bigBlind());
    const bool isDead = dead == kZeroMoney || isDue(dead, hand_.smallBlind());
    if (!isLive || !isDead || put == kZeroMoney) {
      return fail(at, joined(who, ' ', moneyText(live), " and ", moneyText(dead), " dead, with blinds of ",
                             moneyText(hand_.smallBlind()), " and ", moneyText(hand_.bigBlind())));
    }
  }
  if (!last_) return;
  // The big blind goes on by one player every hand, the small blind follows it, and the button follows that.
  if (isBig) {
    if (player.seat == last_->big) report(at, joined(who, " in two hands running"));
    for (const HandView::Player& other : hand_.players()) {
      if (isBetween(last_->big, other.seat, player.seat)) {
        report(at, joined(who, ": the big blind, which was at ", seatText(last_->big), ", passes over ",
                          seatText(other.seat)));
      }
    }
  }
  if (hand_.players().size() == 2) {
    if (isSmall && hand_.button() != player.seat) {
      report(at, joined(who, " of two players, but the button is at ", seatText(hand_.button())));
    }
  } else if (isSmall && player.seat != last_->big) {
    report(at, joined(who, ", but the last big blind was at ", seatText(last_->big)));
  } else if (isBig && last_->small.isValid() && last_->small != player.seat && hand_.button() != last_->small) {
    fail(at, joined("the button is at ", seatText(hand_.button()), ", but the last small blind was at ",
                    seatText(last_->small)));
  }
}

// Cards

void HandAudit::hiddenCards(const SaidAt& at, const SeatID& seat, std::span<const Card> cards) {
  if (std::none_of(cards.begin(), cards.end(), hasFace)) return;
  const std::string viewer = hand_.viewer().isValid() ? seatText(hand_.viewer()) : "an onlooker";
  report(at, joined(viewer, " is shown the cards of ", seatText(seat), " before the show-down"), true);
}

/// The same card is there once.
void HandAudit::newCards(const SaidAt& at, std::span<const Card> cards, const char* whose, const SeatID& owner) {
  for (std::size_t i = 0; i < cards.size(); ++i) {
    const Card& card = cards[i];
    if (!hasFace(card)) continue;
    if (!isRealCard(card)) {
      report(at, joined("a card among those ", whose, " is none (", std::to_string(card.toByte()), ')'));
      continue;
    }
    const auto isIt = [&](const Card& other) { return hasFace(other) && sameFace(card, other); };
    std::string where;
    if (std::any_of(cards.begin(), cards.begin() + static_cast<std::ptrdiff_t>(i), isIt)) where = whose;
    for (const HandView::Player& player : hand_.players()) {
      if (player.seat != owner && std::any_of(player.cards.begin(), player.cards.end(), isIt)) {
        where = "of " + seatText(player.seat);
      }
    }
    if (std::any_of(hand_.board().begin(), hand_.board().end(), isIt)) where = "on the board";
    if (!where.empty()) {
      report(at, joined(cardText(card), " is there twice: among the cards ", whose, ", and ", where));
    }
  }
}

void HandAudit::check(const SaidAt& at, const SrvCardDeal& command) {
  if (hand_.phase() != HandView::Phase::Begun) return fail(at, "hole cards are dealt in the middle of the hand");
  if (!bigPosted_) fail(at, "cards are dealt, but nobody has posted the big blind");
  std::size_t dealt = 0;
  for (const UserCardPack& pack : command.getHands()) {
    const HandView::Player* player = hand_.find(pack.getSeatID());
    if (player == nullptr) {
      report(at, joined("cards are dealt to ", seatText(pack.getSeatID()), ", which is not in the hand"));
      continue;
    }
    ++dealt;
    const std::size_t wanted = holeCards(hand_.game());
    if (pack.cards().size() != wanted || !player->cards.empty()) {
      report(at,
             joined(seatText(player->seat), " is dealt ", std::to_string(pack.cards().size() + player->cards.size()),
                    " cards, not ", std::to_string(wanted)));
    }
    if (player->seat != hand_.viewer()) {
      hiddenCards(at, player->seat, pack.cards());
    } else {
      newCards(at, pack.cards(), "dealt to the player", player->seat);
    }
  }
  if (dealt != hand_.players().size()) {
    report(at, joined("cards are dealt to ", std::to_string(dealt), " of ", std::to_string(hand_.players().size()),
                      " players"));
  }
}

void HandAudit::applied(const SrvCardDeal&) {
  if (hand_.isWhole()) beginRound();
}

void HandAudit::beginRound() {
  round_.reset();
  asked_ = SeatID();
  raisesLeft_ = 255;
  const bool isKnown =
      std::all_of(hand_.players().begin(), hand_.players().end(), [](const auto& player) { return player.stack; });
  // Without the stacks nobody can tell who is all-in, and without stakes what must be bet.
  if (isKnown && hand_.limit() != LimitType::None && !isConfused_) round_.emplace(hand_);
}

/// Nobody, or one player alone, has chips to bet with.
bool HandAudit::bettingIsOver() const {
  return std::count_if(hand_.players().begin(), hand_.players().end(),
                       [](const HandView::Player& player) { return player.canAct(); }) < 2;
}

bool HandAudit::mayShow() const {
  constexpr std::size_t kWholeBoard = 5;
  if (hand_.phase() != HandView::Phase::RoundOver) return false;
  return hand_.remaining() < 2 || hand_.board().size() >= kWholeBoard || bettingIsOver();
}

void HandAudit::check(const SaidAt& at, const SrvPotCardDeal& command) {
  std::vector<Card> cards;
  for (const UserCardPack& pack : command.getHands()) {
    if (pack.getSeatID().isValid()) report(at, joined("cards of the board are dealt to ", seatText(pack.getSeatID())));
    cards.insert(cards.end(), pack.cards().begin(), pack.cards().end());
  }
  const std::size_t before = hand_.board().size();
  const std::size_t wanted = before == 0 ? 3 : before == 3 || before == 4 ? 1 : 0;
  if (hand_.phase() == HandView::Phase::Begun) {
    fail(at, "cards come to the board before any are dealt to the players");
  } else if (hand_.phase() == HandView::Phase::Betting) {
    fail(at, "cards come to the board before the betting round is over");
  } else if (!isConfused_ && hand_.remaining() < 2) {
    fail(at, "cards come to the board though one player alone is left");
  } else if (cards.size() != wanted) {
    fail(at, joined(std::to_string(cards.size()), cards.size() == 1 ? " card comes" : " cards come", " to a board of ",
                    std::to_string(before), ", not ", std::to_string(wanted)));
  }
  if (!std::all_of(cards.begin(), cards.end(), hasFace)) report(at, "a card of the board lies face down");
  newCards(at, cards, "of the board", SeatID());
}

void HandAudit::applied(const SrvPotCardDeal&) { beginRound(); }

void HandAudit::check(const SaidAt& at, const SrvShowPlayerCards& command) {
  const HandView::Player* player = hand_.find(command.seatID());
  const std::string who = seatText(command.seatID());
  if (player == nullptr) return report(at, joined("cards of ", who, " are shown, which is not in the hand"), true);
  if (player->folded) {
    report(at, joined("the cards of ", who, ", which has folded, are shown"), true);
  } else if (!mayShow() && !isConfused_) {
    report(at, joined("the cards of ", who, " are shown before the show-down"), true);
  }
  if (player->shown) report(at, joined("the cards of ", who, " are shown a second time"));
  if (command.cards().size() != holeCards(hand_.game()) ||
      !std::all_of(command.cards().begin(), command.cards().end(), hasFace)) {
    report(at, joined(who, " shows other than two cards"));
  }
  newCards(at, command.cards(), "shown", player->seat);
  for (std::size_t i = 0; i < player->cards.size() && i < command.cards().size(); ++i) {
    if (hasFace(player->cards[i]) && !sameFace(player->cards[i], command.cards()[i])) {
      report(at, joined(who, " shows ", cardText(command.cards()[i]), ", but was dealt ", cardText(player->cards[i])));
    }
  }
}

// Turns and actions

void HandAudit::check(const SaidAt& at, const SrvUserTurn& command) {
  const SeatID seat = command.getSeatID();
  asked_ = seat;
  if (!round_ || hand_.phase() != HandView::Phase::Betting) {
    if (hand_.phase() != HandView::Phase::Betting) {
      fail(at, joined(seatText(seat), " is asked to act while there is no betting"));
    }
    return;
  }
  const auto turn = round_->turn();
  const SeatID rightful = turn ? hand_.players()[*turn].seat : SeatID();
  if (rightful != seat) {
    return fail(at, joined(seatText(seat), " is asked to act, but ",
                           turn ? joined("it is the turn of ", seatText(rightful)) : "the betting is over"));
  }
  const HandView::Player& player = hand_.players()[*turn];
  const RealMoneyType call = std::min(round_->toCall(*turn), *player.stack);
  for (const auto& [action, range] : command.getTurns().options()) {
    const auto& [least, most] = range;
    const std::string offer = joined(seatText(seat), " is offered \"", actionText(action), "\" for ");
    if (action == UserAction::Check && call > kZeroMoney) {
      report(at, joined(seatText(seat), " is offered to check, though ", moneyText(call), " are to be called"));
    } else if (action == UserAction::Call && (least != call || most != call)) {
      report(at, joined(offer, moneyText(least), ", which costs ", moneyText(call)));
    } else if (least < kZeroMoney || most < least || most > *player.stack) {
      report(at,
             joined(offer, moneyText(least), " to ", moneyText(most), " with a stack of ", moneyText(*player.stack)));
    }
  }
}

/// A fault after which nobody knows whose turn is next, nor what is in the pots.
void HandAudit::fail(const SaidAt& at, std::string text) {
  if (!isConfused_) report(at, std::move(text));
  isConfused_ = true;
  round_.reset();
  asked_ = SeatID();
}

/// What leaves the stack lies before the player.
bool HandAudit::amounts(const SaidAt& at, const SrvUserActionNotify& command, const HandView::Player& player) {
  const std::string who = seatText(player.seat);
  if (command.getFreeMoney() < kZeroMoney || command.getTableMoney() < kZeroMoney) {
    fail(at, joined(who, ' ', actionText(command.getActionCode()), " and has ", moneyText(command.getFreeMoney()),
                    " left, with ", moneyText(command.getTableMoney()), " before it"));
    return false;
  }
  if (!player.stack || isConfused_) return true;
  const RealMoneyType put = *player.stack - command.getFreeMoney();
  const RealMoneyType live = command.getTableMoney() - player.bet;
  const bool mayBeDead = isPost(command.getActionCode()) && command.getActionCode() != UserAction::SmallBlind &&
                         command.getActionCode() != UserAction::BigBlind;
  if (mayBeDead ? live <= put : live == put) return true;
  fail(at, joined(who, ' ', actionText(command.getActionCode()), ": ", moneyText(player.bet), " and a stack of ",
                  moneyText(*player.stack), " become ", moneyText(command.getTableMoney()), " and ",
                  moneyText(command.getFreeMoney())));
  return false;
}

void HandAudit::check(const SaidAt& at, const SrvUserActionNotify& command, const OwnTurn& own) {
  const UserAction action = command.getActionCode();
  const HandView::Player* player = hand_.find(command.getSeatID());
  if (player == nullptr) {
    return fail(at, joined(seatText(command.getSeatID()), ' ', actionText(action), ", which is not in the hand"));
  }
  if (!amounts(at, command, *player) || isConfused_) return;
  if (action == UserAction::NoAction) {
    uncalled(at, command, *player);
  } else if (isPost(action)) {
    post(at, command, *player);
  } else if (act(at, command, *player) && player->seat == hand_.viewer()) {
    choice(at, command, command.getTableMoney() - player->bet, own);
  }
}

void HandAudit::uncalled(const SaidAt& at, const SrvUserActionNotify& command, const HandView::Player& player) {
  const std::string who =
      joined(seatText(player.seat), " gets ", moneyText(player.bet - command.getTableMoney()), " back");
  if (hand_.phase() != HandView::Phase::Betting) return fail(at, joined(who, " while there is no betting"));
  if (round_ && round_->turn()) {
    return fail(at, joined(who, ", but it is the turn of ", seatText(hand_.players()[*round_->turn()].seat)));
  }
  RealMoneyType others;
  for (const HandView::Player& other : hand_.players()) {
    if (other.seat != player.seat) others = std::max(others, other.bet);
  }
  if (command.getTableMoney() == others && player.bet > others) return;
  fail(at, joined(who, " of ", moneyText(player.bet), ", where the others have bet ", moneyText(others), " at most"));
}

bool HandAudit::act(const SaidAt& at, const SrvUserActionNotify& command, const HandView::Player& player) {
  const UserAction action = command.getActionCode();
  const std::string who = joined(seatText(player.seat), ' ', actionText(action));
  const auto wrong = [&](const std::string& why) {
    fail(at, joined(who, why));
    return false;
  };
  if (hand_.phase() != HandView::Phase::Betting) {
    return wrong(hand_.phase() == HandView::Phase::Begun ? " before the cards are dealt"
                                                         : " while there is no betting");
  }
  if (player.folded) return wrong(", though it has folded");
  if (player.stack && *player.stack == kZeroMoney) return wrong(", though it is all-in already");
  const RealMoneyType put = command.getTableMoney() - player.bet;
  if (put < kZeroMoney) return wrong(joined(" and takes ", moneyText(kZeroMoney - put), " back"));
  if ((action == UserAction::Fold || action == UserAction::Check) && put != kZeroMoney) {
    return wrong(joined(" and adds ", moneyText(put)));
  }
  if (!round_) {
    if (asked_.isValid() && asked_ != player.seat) return wrong(joined(", but it is the turn of ", seatText(asked_)));
    return true;
  }
  const auto turn = round_->turn();
  if (!turn) return wrong(", but the betting round is over");
  if (*turn != indexOf(player)) return wrong(joined(", but it is the turn of ", seatText(hand_.players()[*turn].seat)));
  return wager(at, action, *turn, put);
}

bool HandAudit::wager(const SaidAt& at, UserAction action, std::size_t index, const RealMoneyType& put) {
  const HandView::Player& player = hand_.players()[index];
  const std::string who = joined(seatText(player.seat), ' ', actionText(action));
  const auto wrong = [&](const std::string& why) {
    fail(at, joined(who, why));
    return false;
  };
  const RealMoneyType& stack = *player.stack;
  const RealMoneyType toCall = round_->toCall(index);
  const RealMoneyType call = std::min(toCall, stack);
  const RealMoneyType& level = round_->level();
  switch (action) {
    case UserAction::Fold:
      return true;
    case UserAction::Check:
      return call == kZeroMoney || wrong(joined(", though ", moneyText(call), " are to be called"));
    case UserAction::Call:
      return (put == call && call > kZeroMoney) ||
             wrong(joined(' ' + moneyText(put), ", where ", moneyText(call), " are to be called"));
    case UserAction::AllIn:
      if (put != stack) return wrong(joined(" with ", moneyText(put), " of ", moneyText(stack)));
      break;
    case UserAction::Bet:
      if (level != kZeroMoney) return wrong(joined(", though ", moneyText(level), " are bet already"));
      break;
    case UserAction::Raise:
    case UserAction::BigRaise:
      if (level == kZeroMoney) return wrong(", though nobody has bet");
      break;
    default:
      round_.reset();  // whatever that is
      return true;
  }
  const RealMoneyType to = player.bet + put;
  if (to <= level) {
    return action == UserAction::AllIn ||
           wrong(joined(" to ", moneyText(to), ", which is not above ", moneyText(level)));
  }
  if (!round_->mayRaise(index) || raisesLeft_ == 0) {
    return wrong(joined(" to ", moneyText(to), ", though the betting is not open for a raise"));
  }
  const RealMoneyType least = round_->leastRaiseTo();
  if (to < least && put != stack)
    return wrong(joined(" to ", moneyText(to), ", where the least is ", moneyText(least)));
  if (round_->isFixed() && to > least) {
    return wrong(joined(" to ", moneyText(to), ", where the limit is ", moneyText(least)));
  }
  return true;
}

/// What the player was asked, and has said.
void HandAudit::choice(const SaidAt& at, const SrvUserActionNotify& command, const RealMoneyType& put,
                       const OwnTurn& own) {
  const UserAction action = command.getActionCode();
  const std::string who = joined(seatText(hand_.viewer()), ' ', actionText(action));
  if (own.asked) {
    const auto option = own.asked->options().find(action);
    if (option == own.asked->options().end()) return report(at, joined(who, ", which it was not offered"));
    const auto& [least, most] = option->second;
    if (put < least || put > most) {
      return report(
          at, joined(who, " for ", moneyText(put), ", but was offered ", moneyText(least), " to ", moneyText(most)));
    }
  }
  // The server itself checks or folds for who is absent.
  if (!own.hearsClient || action == UserAction::Fold || action == UserAction::Check) return;
  if ((own.chosen & actionBit(action)) != 0) return;
  if (!own.asked) return report(at, joined(who, ", though its player was not asked"));
  if ((own.answers & actionBit(action)) == 0) report(at, joined(who, ", though its player did not say so"));
}

void HandAudit::applied(const SrvUserActionNotify& command) {
  const HandView::Player* player = hand_.find(command.getSeatID());
  if (asked_ == command.getSeatID()) asked_ = SeatID();
  if (!round_ || player == nullptr || isPost(command.getActionCode())) return;
  if (command.getActionCode() == UserAction::NoAction) return;
  round_->acted(indexOf(*player));
  raisesLeft_ = command.raisesLeft();
}

// Pots

void HandAudit::check(const SaidAt& at, const SrvBetRoundComplete& command) {
  if (hand_.phase() != HandView::Phase::Betting) return fail(at, "a betting round is over, but there was none");
  if (round_ && round_->turn()) {
    return fail(at, joined("the betting round is over, but it is the turn of ",
                           seatText(hand_.players()[*round_->turn()].seat)));
  }
  const HandView::Player* highest = nullptr;
  RealMoneyType second;
  for (const HandView::Player& player : hand_.players()) {
    if (highest == nullptr || player.bet > highest->bet) {
      second = highest == nullptr ? kZeroMoney : highest->bet;
      highest = &player;
    } else {
      second = std::max(second, player.bet);
    }
  }
  if (!isConfused_ && highest != nullptr && highest->bet > second) {
    return fail(at, joined("the betting round is over, but ", moneyText(highest->bet - second),
                           " that nobody called are not given back to ", seatText(highest->seat)));
  }
  pots(at, command);
}

void HandAudit::pots(const SaidAt& at, const SrvBetRoundComplete& command) {
  if (isConfused_) return;
  const RealMoneyType& rake = command.rake();
  if (rake < kZeroMoney) {
    report(at, joined("the rake is ", moneyText(rake)));
  } else if (rake > kZeroMoney && hand_.board().empty()) {
    report(at, joined("a rake of ", moneyText(rake), " is taken before there is a flop"));
  } else if (rake > kZeroMoney && hand_.isTournament()) {
    report(at, joined("a rake of ", moneyText(rake), " is taken in a tournament"));
  } else if (hand_.isWhole() && rake < hand_.rake()) {
    report(at, joined("the rake goes from ", moneyText(hand_.rake()), " to ", moneyText(rake)));
  }
  if (!hand_.isWhole()) return;
  std::vector<RealMoneyType> told{command.getPot().mainPot()};
  told.insert(told.end(), command.getPot().sidePots().begin(), command.getPot().sidePots().end());
  const RealMoneyType total = std::accumulate(told.begin(), told.end(), kZeroMoney);
  const RealMoneyType paid = hand_.paid();
  if (total + rake != paid) {
    return fail(at, joined("pots of ", moneyText(total), " and a rake of ", moneyText(rake), " are told, but ",
                           moneyText(paid), " were paid in"));
  }
  std::vector<HandView::Share> shares = hand_.shares();
  if (shares.empty()) shares.emplace_back();  // a lone blind that was given back
  if (told.size() != shares.size()) {
    return fail(
        at, joined(std::to_string(told.size()), " pots are told, but the bets make ", std::to_string(shares.size())));
  }
  for (std::size_t i = 0; i < told.size(); ++i) {
    // The rake may come off any of them.
    if (told[i] <= shares[i].amount && told[i] >= shares[i].amount - rake) continue;
    return fail(at, joined("pot ", std::to_string(i + 1), " is told as ", moneyText(told[i]), ", but the bets make it ",
                           moneyText(shares[i].amount)));
  }
}

// The end

void HandAudit::check(const SaidAt& at, const SrvTUShowDown& command) {
  constexpr std::size_t kWholeBoard = 5;
  if (hand_.phase() != HandView::Phase::RoundOver) {
    fail(at, "the hand is over, but its betting round is not");
  } else if (!isConfused_ && hand_.remaining() > 1 && hand_.board().size() < kWholeBoard) {
    fail(at, joined("the hand is over with ", std::to_string(hand_.remaining()), " players and a board of ",
                    std::to_string(hand_.board().size()), " cards"));
  }
  std::size_t last = 0;
  for (const SDInfo& final : command.getUserCards()) {
    const HandView::Player* player = hand_.find(final.getSeatID());
    const std::string who = seatText(final.getSeatID());
    if (player == nullptr) {
      fail(at, joined(who, " is among the last players, but not in the hand"));
      continue;
    }
    ++last;
    if (player->folded) {
      fail(at, joined(who, " is among the last players, though it has folded"));
      continue;
    }
    if (final.getMoney() != command.wins(final.getSeatID())) {
      report(at, joined(who, " wins ", moneyText(final.getMoney()), " and ", moneyText(command.wins(final.getSeatID())),
                        " in the same command"));
    }
    if (!player->shown && player->seat != hand_.viewer() &&
        std::any_of(final.cards().begin(), final.cards().end(), hasFace)) {
      report(at, joined("the cards of ", who, " are told, though it did not show them"), true);
    }
    for (std::size_t i = 0; i < final.cards().size() && i < player->cards.size(); ++i) {
      const Card& card = final.cards()[i];
      if (hasFace(card) && hasFace(player->cards[i]) && !sameFace(card, player->cards[i])) {
        report(at, joined(who, " had ", cardText(card), " in the end, but ", cardText(player->cards[i]), " before"));
      }
    }
  }
  if (last != hand_.remaining()) {
    fail(at, joined(std::to_string(last), " last players are told, but ", std::to_string(hand_.remaining()),
                    " were in to the end"));
  }
  wins(at, command);
}

void HandAudit::wins(const SaidAt& at, const SrvTUShowDown& command) {
  RealMoneyType won;
  for (unsigned seat = 0; seat < 256; ++seat) {
    const SeatID id(static_cast<SeatID::value_type>(seat));
    const RealMoneyType win = command.wins(id);
    won += win;
    const HandView::Player* player = hand_.find(id);
    if (win < kZeroMoney) {
      fail(at, joined(seatText(id), " wins ", moneyText(win)));
    } else if (win > kZeroMoney && player == nullptr) {
      fail(at, joined(seatText(id), " wins ", moneyText(win), ", but is not in the hand"));
    } else if (win > kZeroMoney && player->folded) {
      fail(at, joined(seatText(id), " wins ", moneyText(win), ", though it has folded"));
    }
    if (player != nullptr && hand_.isWhole() && command.bets(id) != player->paid + player->dead) {
      fail(at, joined(seatText(id), " is said to have bet ", moneyText(command.bets(id)), ", but has bet ",
                      moneyText(player->paid + player->dead)));
    }
  }
  // This holds by itself, whatever was wrong before.
  const RealMoneyType pots = std::accumulate(hand_.pots().begin(), hand_.pots().end(), kZeroMoney);
  if (hand_.phase() == HandView::Phase::RoundOver && won != pots) {
    const bool wasConfused = std::exchange(isConfused_, false);
    // A pot that was told wrongly may well be paid rightly.
    if (!wasConfused || won > std::max(pots, hand_.paid())) {
      fail(at, joined("wins of ", moneyText(won), " are paid from pots of ", moneyText(pots)));
    }
    isConfused_ = true;
  }
  if (isConfused_ || !hand_.isWhole()) return;
  if (command.casinoProfit() != hand_.rake()) {
    fail(at, joined("a rake of ", moneyText(command.casinoProfit()), " is taken, but ", moneyText(hand_.rake()),
                    " were told with the pots"));
  }
  if (!isConfused_) winners(at, command);
}

/// Each pot goes to the best of its contenders, in equal shares.
void HandAudit::winners(const SaidAt& at, const SrvTUShowDown& command) {
  if (hand_.game() != GameType::TexasHoldem) return;
  const std::vector<HandView::Share> shares = hand_.shares();
  if (shares.size() != hand_.pots().size()) return;
  std::map<std::size_t, std::pair<RealMoneyType, RealMoneyType>> due;  // least and most, by index
  for (std::size_t i = 0; i < hand_.players().size(); ++i) due[i] = {};
  for (std::size_t number = 0; number < shares.size(); ++number) {
    std::vector<std::size_t> best;
    HandRank rank;
    for (const std::size_t i : shares[number].contenders) {
      const HandView::Player& player = hand_.players()[i];
      // Who does not show has lost. The viewer's own cards may tell more, but that is not what was decided by.
      const HandRank own = player.shown ? HandRank::of(player.cards, hand_.board()) : HandRank();
      if (shares[number].contenders.size() > 1 && (!own.isHand() || own < rank)) continue;
      if (own > rank) best.clear();
      rank = own;
      best.push_back(i);
    }
    if (best.empty()) return fail(at, joined("pot ", std::to_string(number + 1), " is won, but nobody shows cards"));
    const auto count = static_cast<std::int64_t>(best.size());
    const RealMoneyType least = hand_.pots()[number] / count;
    const bool isEven = least * count == hand_.pots()[number];
    for (const std::size_t i : best) {
      due[i].first += least;
      due[i].second += isEven ? least : least + RealMoneyType::fromHundredths(1);
    }
  }
  for (const auto& [index, range] : due) {
    const HandView::Player& player = hand_.players()[index];
    const RealMoneyType win = command.wins(player.seat);
    if (win >= range.first && win <= range.second) continue;
    const HandRank rank = player.shown ? HandRank::of(player.cards, hand_.board()) : HandRank();
    return fail(at, joined(seatText(player.seat), " wins ", moneyText(win),
                           rank.isHand() ? joined(" with ", rank.words()) : std::string(), ", but ",
                           moneyText(range.first), " of the pots are due"));
  }
}

// What is told beside the hand

void HandAudit::check(const SaidAt& at, const SrvUserStateOnTable& command) {
  const HandView::Player* player = hand_.find(command.getSeatID());
  if (player == nullptr || hand_.isOver()) return;
  if (command.state() == UserState::Empty) {
    return report(at, joined(seatText(player->seat), " is free, though its player is in the hand"));
  }
  if (isConfused_) return;
  if (player->stack && command.getMoney() != *player->stack) {
    fail(at, joined(seatText(player->seat), " is said to have ", moneyText(command.getMoney()), ", but has ",
                    moneyText(*player->stack)));
  }
  if (command.state() == UserState::Folded && !player->folded) {
    fail(at, joined(seatText(player->seat), " is said to have folded, but has not"));
  }
}

void HandAudit::check(const SaidAt& at, const ClientTableState& state) {
  for (const ClientSeatState& seat : state.seats) {
    const HandView::Player* player = hand_.find(seat.seatID);
    const bool isShown = player != nullptr && player->shown;
    if (seat.seatID != hand_.viewer() && !isShown) hiddenCards(at, seat.seatID, seat.cards);
    if (isConfused_) continue;
    if (player == nullptr) {
      if (!seat.cards.empty()) fail(at, joined(seatText(seat.seatID), " has cards, but is not in the hand"));
    } else if (player->stack && (seat.money != *player->stack || seat.bet != player->bet)) {
      fail(at, joined(seatText(seat.seatID), " is said to have ", moneyText(seat.money), " and ", moneyText(seat.bet),
                      " before it, but has ", moneyText(*player->stack), " and ", moneyText(player->bet)));
    } else if (player->folded != seat.cards.empty() && hand_.phase() != HandView::Phase::Begun) {
      fail(at, joined(seatText(seat.seatID), player->folded ? " has cards, though it has folded" : " has no cards"));
    }
  }
  if (isConfused_) return;
  if (!std::equal(hand_.board().begin(), hand_.board().end(), state.board.begin(), state.board.end(), sameFace)) {
    report(at, "the board is told otherwise than before");
  }
}

}  // namespace poker
