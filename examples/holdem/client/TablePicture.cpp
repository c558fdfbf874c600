#include <examples/holdem/client/TablePicture.h>

#include <examples/holdem/shared/Protocol.h>

#include <algorithm>
#include <charconv>
#include <utility>

namespace poker::holdem {

namespace {

bool isInHand(UserState state) {
  return state == UserState::Playing || state == UserState::Folded || state == UserState::AllIn;
}

}  // namespace

const ClientSeatState* TablePicture::seat(const SeatID& id) const {
  const auto place = std::find_if(state_.seats.begin(), state_.seats.end(),
                                  [&](const ClientSeatState& seat) { return seat.seatID == id; });
  return place == state_.seats.end() ? nullptr : &*place;
}

ClientSeatState* TablePicture::find(const SeatID& id) {
  return const_cast<ClientSeatState*>(std::as_const(*this).seat(id));
}

RealMoneyType TablePicture::highestBet() const {
  RealMoneyType highest;
  for (const ClientSeatState& seat : state_.seats) highest = std::max(highest, seat.bet);
  return highest;
}

RealMoneyType TablePicture::total() const {
  RealMoneyType sum = state_.pot.total();
  for (const ClientSeatState& seat : state_.seats) sum += seat.money + seat.bet;
  return sum;
}

void TablePicture::clearBets() {
  for (ClientSeatState& seat : state_.seats) {
    seat.bet = {};
    seat.lastAction = UserAction::NoAction;
  }
}

void TablePicture::clearHand() {
  clearBets();
  for (ClientSeatState& seat : state_.seats) seat.cards.clear();
  state_.board.clear();
  state_.pot.clear();
  endTurn();
}

void TablePicture::endTurn() {
  state_.turnSeat = {};
  state_.turnTimeLeft = 0;
}

void TablePicture::apply(const SrvUpdateHintText& command) {
  if (command.id() != kHandNumberHint) return;
  const std::string& text = command.hint();
  std::uint64_t number = 0;
  if (std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc()) state_.handNumber = number;
}

void TablePicture::apply(const SrvGameStart& command) {
  clearHand();
  for (ClientSeatState& seat : state_.seats) {
    if (command.isParticipating(seat.seatID)) seat.state = UserState::Playing;
  }
}

void TablePicture::apply(const SrvUserActionNotify& command) {
  if (state_.turnSeat == command.getSeatID()) endTurn();
  ClientSeatState* seat = find(command.getSeatID());
  if (seat == nullptr) return;
  seat->money = command.getFreeMoney();
  seat->bet = command.getTableMoney();
  const UserAction action = command.getActionCode();
  if (action == UserAction::NoAction) return;
  seat->lastAction = action;
  if (action == UserAction::Fold) {
    seat->state = UserState::Folded;
    seat->cards.clear();
  } else if (seat->state == UserState::Playing && seat->money == kZeroMoney) {
    seat->state = UserState::AllIn;
  }
}

void TablePicture::apply(const SrvCardDeal& command) {
  for (const UserCardPack& hand : command.getHands()) {
    ClientSeatState* seat = find(hand.getSeatID());
    if (seat != nullptr) seat->cards.insert(seat->cards.end(), hand.cards().begin(), hand.cards().end());
  }
}

void TablePicture::apply(const SrvUserTurn& command) {
  state_.turnSeat = command.getSeatID();
  state_.turnTimeLeft = command.turnReplyTimeout();
}

void TablePicture::apply(const SrvBetRoundComplete& command) {
  clearBets();
  state_.pot = command.getPot();
  endTurn();
}

void TablePicture::apply(const SrvPotCardDeal& command) {
  for (const UserCardPack& pack : command.getHands()) {
    state_.board.insert(state_.board.end(), pack.cards().begin(), pack.cards().end());
  }
}

void TablePicture::apply(const SrvShowPlayerCards& command) {
  if (ClientSeatState* seat = find(command.seatID())) seat->cards = command.cards();
}

void TablePicture::apply(const SrvTUShowDown& command) {
  clearHand();
  state_.handNumber = 0;
  for (ClientSeatState& seat : state_.seats) {
    seat.money += command.wins(seat.seatID);
    if (isInHand(seat.state)) seat.state = UserState::Waiting;
  }
}

void TablePicture::apply(const SrvUserStateOnTable& command) {
  const auto end = state_.seats.end();
  const auto place = std::find_if(state_.seats.begin(), end,
                                  [&](const ClientSeatState& seat) { return seat.seatID >= command.getSeatID(); });
  const bool isThere = place != end && place->seatID == command.getSeatID();
  if (command.state() == UserState::Empty) {
    if (isThere) {
      std::rotate(place, place + 1, end);
      state_.seats.resize(state_.seats.size() - 1);
    }
    if (state_.ownSeat == command.getSeatID()) state_.ownSeat = {};
    return;
  }
  ClientSeatState* seat = isThere ? &*place : nullptr;
  if (!isThere) {
    const auto index = place - state_.seats.begin();
    state_.seats.emplace_back();
    const auto inserted = state_.seats.begin() + index;
    std::rotate(inserted, state_.seats.end() - 1, state_.seats.end());
    seat = &*inserted;
    seat->seatID = command.getSeatID();
  }
  seat->displayName = command.getDisplayName();
  seat->money = command.getMoney();
  seat->state = command.state();
}

void TablePicture::apply(const SrvLevelSwitch& command) {
  if (!command.isSwitching()) return;
  const bool isFixed = state_.limitType == LimitType::FixedLimit;
  // The big blind of fixed limit is the bet of the early rounds.
  state_.bigBlind = state_.lowBet = isFixed ? command.getLowBet() : command.getHiBet();
  state_.smallBlind = isFixed ? state_.bigBlind.half() : command.getLowBet();
  state_.highBet = isFixed ? command.getHiBet() : RealMoneyType();
}

}  // namespace poker::holdem
