#include <CommandProcessor/commands/AllCommands.h>
#include <CommandProcessor/core/Catalogue.h>
#include <inspect/CommandText.h>
#include <inspect/hands/TableFollower.h>

#include <algorithm>
#include <charconv>
#include <type_traits>
#include <utility>

namespace poker {

namespace {

constexpr std::string_view kLobby = "lobby";  // where captures put connections that look at no table

constexpr std::uint16_t pairOf(ProcessorFamily family, std::uint8_t code) {
  return static_cast<std::uint16_t>(static_cast<unsigned>(family) << 8 | code);
}
template <class T>
constexpr std::uint16_t kPair = pairOf(CommandInfo<T>::family, CommandInfo<T>::code);

/// FNV-1a over whole numbers.
class Meaning {
 public:
  Meaning& add(std::uint64_t value) {
    value_ = (value_ ^ value) * 0x100000001B3;
    value_ ^= value_ >> 29;
    return *this;
  }
  Meaning& add(const RealMoneyType& amount) { return add(static_cast<std::uint64_t>(amount.hundredths())); }
  Meaning& add(const SeatID& seat) { return add(std::uint64_t{seat.value()}); }
  template <class Cards>
  Meaning& addCards(const Cards& cards) {
    for (const Card& card : cards) add(std::uint64_t{card.toByte()});
    return *this;
  }
  std::uint64_t value() const { return value_; }

 private:
  std::uint64_t value_ = 0xCBF29CE484222325;
};

template <class T>
const T& as(const PokerCommandI& command) {
  return static_cast<const T&>(command);
}

template <class T>
PublicWord wordOf() {
  PublicWord word;
  word.command = CommandInfo<T>::name;
  return word;
}

PublicWord wordOf(const SrvMoveDealChip& command) {
  PublicWord word = wordOf<SrvMoveDealChip>();
  word.seat = command.getSeatID();
  return word;
}

PublicWord wordOf(const SrvPostBlind& command) {
  PublicWord word = wordOf<SrvPostBlind>();
  word.seat = command.getSeatID();
  word.action = static_cast<UserAction>(command.blind());
  return word;
}

PublicWord wordOf(const SrvUserActionNotify& command) {
  PublicWord word = wordOf<SrvUserActionNotify>();
  word.seat = command.getSeatID();
  word.action = command.getActionCode();
  word.first = command.getTableMoney();
  word.second = command.getFreeMoney();
  return word;
}

PublicWord wordOf(const SrvCardDeal& command) {
  PublicWord word = wordOf<SrvCardDeal>();
  Meaning meaning;
  for (const UserCardPack& pack : command.getHands()) {
    meaning.add(pack.getSeatID()).add(std::uint64_t{pack.cards().size()});
  }
  word.meaning = meaning.value();
  return word;
}

PublicWord wordOf(const SrvBetRoundComplete& command) {
  PublicWord word = wordOf<SrvBetRoundComplete>();
  word.first = command.getPot().total();
  word.second = command.rake();
  Meaning meaning;
  for (const RealMoneyType& pot : command.getPot().sidePots()) meaning.add(pot);
  word.meaning = meaning.value();
  return word;
}

PublicWord wordOf(const SrvPotCardDeal& command) {
  PublicWord word = wordOf<SrvPotCardDeal>();
  Meaning meaning;
  for (const UserCardPack& pack : command.getHands()) meaning.addCards(pack.cards());
  word.meaning = meaning.value();
  return word;
}

PublicWord wordOf(const SrvShowPlayerCards& command) {
  PublicWord word = wordOf<SrvShowPlayerCards>();
  word.seat = command.seatID();
  word.meaning = Meaning().addCards(command.cards()).value();
  return word;
}

/// Without the cards, of which each viewer may see others.
PublicWord wordOf(const SrvTUShowDown& command) {
  PublicWord word = wordOf<SrvTUShowDown>();
  Meaning meaning;
  for (const SDInfo& final : command.getUserCards()) meaning.add(final.getSeatID()).add(final.getMoney());
  for (unsigned seat = 0; seat < 256; ++seat) {
    const SeatID id(static_cast<SeatID::value_type>(seat));
    word.first += command.wins(id);
    meaning.add(command.wins(id)).add(command.bets(id));
  }
  word.second = command.casinoProfit();
  word.meaning = meaning.value();
  return word;
}

}  // namespace

std::string PublicWord::text() const {
  if (command == CommandInfo<SrvUserActionNotify>::name) {
    return seatText(seat) + ' ' + actionText(action) + ", " + moneyText(first) + " before it and " + moneyText(second) +
           " left";
  }
  if (command == CommandInfo<SrvUpdateHintText>::name || command == CommandInfo<SrvGameStart>::name) {
    return "a hand begins";
  }
  if (command == CommandInfo<SrvMoveDealChip>::name) return "the button is at " + seatText(seat);
  if (command == CommandInfo<SrvPostBlind>::name) return "a blind is due at " + seatText(seat);
  if (command == CommandInfo<SrvCardDeal>::name) return "cards are dealt";
  if (command == CommandInfo<SrvPotCardDeal>::name) return "cards come to the board";
  if (command == CommandInfo<SrvShowPlayerCards>::name) return seatText(seat) + " shows cards";
  if (command == CommandInfo<SrvBetRoundComplete>::name) {
    return "the round is over, pots " + moneyText(first) + ", rake " + moneyText(second);
  }
  return "the hand is over, wins " + moneyText(first) + ", rake " + moneyText(second);
}

bool TableFollower::wants(ProcessorFamily family, std::uint8_t code) {
  switch (pairOf(family, code)) {
    case kPair<SrvTableState>:
    case kPair<SrvUserStateOnTable>:
    case kPair<SrvSitOk>:
    case kPair<SrvUpdateHintText>:
    case kPair<SrvGameStart>:
    case kPair<SrvMoveDealChip>:
    case kPair<SrvPostBlind>:
    case kPair<SrvUserActionNotify>:
    case kPair<SrvCardDeal>:
    case kPair<SrvUserTurn>:
    case kPair<SrvBetRoundComplete>:
    case kPair<SrvPotCardDeal>:
    case kPair<SrvShowPlayerCards>:
    case kPair<SrvTUShowDown>:
    case kPair<SrvLevelSwitch>:
    case kPair<SrvTakeSeatInfo>:
    case kPair<ClHandShake>:
    case kPair<ClUserAction>:
    case kPair<ClActionInAdvance>:
    case kPair<ClScriptSetDealer>:
      return true;
    default:
      return false;
  }
}

void TableFollower::take(const CapturedFrame& frame, const PokerCommandI& command, ProcessorFamily family,
                         std::uint8_t code) {
  at_ = {frame.number, frame.offset, frame.direction.value_or(CommandDirection::ServerToClient)};
  time_ = frame.time;
  if (frame.table != frameTable_) frameTable_ = frame.table;
  if (key_.empty() && !frameTable_.empty() && frameTable_ != kLobby) {
    // Its state is not captured, or lost: the recorder knows the table all the same.
    key_ = table_.label = frameTable_;
    events_.onTable(*this);
  }
  if (family == ProcessorFamily::Client) own_.hearsClient = true;
  switch (pairOf(family, code)) {
    case kPair<SrvTableState>:
      return on(as<SrvTableState>(command));
    case kPair<SrvUserStateOnTable>:
      return on(as<SrvUserStateOnTable>(command));
    case kPair<SrvSitOk>:
      ownSeat_ = as<SrvSitOk>(command).getSeatID();
      knowsSeat_ = true;
      return;
    case kPair<SrvUpdateHintText>:
      return on(as<SrvUpdateHintText>(command));
    case kPair<SrvGameStart>:
      return on(as<SrvGameStart>(command));
    case kPair<SrvMoveDealChip>:
      return told(as<SrvMoveDealChip>(command));
    case kPair<SrvPostBlind>:
      return told(as<SrvPostBlind>(command));
    case kPair<SrvUserActionNotify>:
      return told(as<SrvUserActionNotify>(command));
    case kPair<SrvCardDeal>:
      return told(as<SrvCardDeal>(command));
    case kPair<SrvUserTurn>:
      return on(as<SrvUserTurn>(command));
    case kPair<SrvBetRoundComplete>:
      return told(as<SrvBetRoundComplete>(command));
    case kPair<SrvPotCardDeal>:
      return told(as<SrvPotCardDeal>(command));
    case kPair<SrvShowPlayerCards>:
      return told(as<SrvShowPlayerCards>(command));
    case kPair<SrvTUShowDown>:
      told(as<SrvTUShowDown>(command));
      return endHand();
    case kPair<SrvLevelSwitch>:
      return on(as<SrvLevelSwitch>(command));
    case kPair<SrvTakeSeatInfo>:
      toldGame_ = as<SrvTakeSeatInfo>(command).getTableInfo().gameID;
      toldTournament_ = as<SrvTakeSeatInfo>(command).getTableInfo().tournamentID;
      return;
    case kPair<ClHandShake>:
      return lose();
    case kPair<ClUserAction>:
      own_.answers |= actionBit(as<ClUserAction>(command).getActionCode());
      return;
    case kPair<ClActionInAdvance>:
      if (!as<ClActionInAdvance>(command).onOff()) return;
      own_.chosen |= as<ClActionInAdvance>(command).actions();
      chosenNow_ |= as<ClActionInAdvance>(command).actions();
      return;
    case kPair<ClScriptSetDealer>:
      return events_.onScript(*this);
    default:
      return;
  }
}

// The table

void TableFollower::lose() {
  leaveHand();
  table_ = TableFacts();
  key_.clear();
  seats_.clear();
  ownSeat_ = SeatID();
  knowsSeat_ = false;
  last_.reset();
  number_.reset();
  lastNumber_ = 0;
  isBetween_ = false;
  own_ = OwnTurn();
  events_.onTable(*this);
}

void TableFollower::leaveHand() {
  const auto hand = std::exchange(hand_, nullptr);
  if (hand == nullptr) return;
  if (!hand->view.isOver()) {
    // What its players have in the end is not known.
    for (TableSeat& seat : seats_) {
      if (hand->view.find(seat.seat) != nullptr) seat.stack.reset();
    }
  }
  events_.onEnd(*this, *hand);
}

/// The follower looks at that table from now on.
void TableFollower::beAt(const TableFacts& table) {
  const bool isLabelled = !frameTable_.empty() && frameTable_ != kLobby;
  const bool isSame = table.gameID == table_.gameID && table_.seats != 0;
  if (!isSame) {
    leaveHand();
    last_.reset();
    number_.reset();
    lastNumber_ = 0;
  }
  table_ = table;
  table_.label = isLabelled ? frameTable_ : table.name;
  if (toldGame_ == table.gameID) table_.tournament = toldTournament_;
  const std::string key = isLabelled ? frameTable_ : '#' + std::to_string(table.gameID);
  if (isSame && key == key_) return;
  leaveHand();
  key_ = key;
  events_.onTable(*this);
}

void TableFollower::on(const SrvTableState& command) {
  const ClientTableState& state = command.getState();
  TableFacts table;
  table.name = state.tableName;
  table.gameID = state.gameID;
  table.seats = state.maxSeats;
  table.game = state.gameType;
  table.limit = state.limitType;
  table.smallBlind = state.smallBlind;
  table.bigBlind = state.bigBlind;
  table.lowBet = state.lowBet;
  table.highBet = state.highBet;
  beAt(table);
  if (hand_ != nullptr && hand_->view.number() == state.handNumber && hand_->view.viewer() == state.ownSeat) {
    hand_->audit.check(at_, state);
  } else {
    leaveHand();
    last_.reset();
    if (state.handNumber != 0) {
      hand_ = std::make_shared<SeenHand>(connection_, table_, state);
      hand_->audit.join(at_, state);
      own_.asked.reset();
      events_.onBegin(*this, hand_);
    }
  }
  isBetween_ = state.handNumber == 0;
  seats_.clear();
  for (const ClientSeatState& seat : state.seats) seats_.push_back({seat.seatID, seat.displayName, seat.money});
  ownSeat_ = state.ownSeat;
  knowsSeat_ = true;
}

void TableFollower::on(const SrvUserStateOnTable& command) {
  const auto seat = std::find_if(seats_.begin(), seats_.end(),
                                 [&](const TableSeat& each) { return each.seat == command.getSeatID(); });
  if (hand_ != nullptr) hand_->audit.check(at_, command);
  if (command.state() == UserState::Empty) {
    if (seat != seats_.end()) seats_.erase(seat);
    if (ownSeat_ == command.getSeatID()) ownSeat_ = SeatID();
    return;
  }
  if (seat == seats_.end()) {
    seats_.push_back({command.getSeatID(), command.getDisplayName(), command.getMoney()});
    return;
  }
  const bool isLess =
      isBetween_ && seat->stack && seat->name == command.getDisplayName() && command.getMoney() < *seat->stack;
  if (isLess || command.getMoney() < kZeroMoney) {
    faultBetween(seatText(seat->seat) + " is said to have " + moneyText(command.getMoney()) +
                 (isLess ? ", but has " + moneyText(*seat->stack) : std::string()));
    seat->stack.reset();  // one of the two, who knows
  } else {
    seat->stack = command.getMoney();
  }
  seat->name = command.getDisplayName();
}

void TableFollower::on(const SrvLevelSwitch& command) {
  if (!command.isSwitching()) return;
  const bool isFixed = table_.limit == LimitType::FixedLimit;
  // The big blind of fixed limit is the bet of the early rounds.
  table_.bigBlind = table_.lowBet = isFixed ? command.getLowBet() : command.getHiBet();
  table_.smallBlind = isFixed ? table_.bigBlind.half() : command.getLowBet();
  table_.highBet = isFixed ? command.getHiBet() : kZeroMoney;
}

// From hand to hand

void TableFollower::faultBetween(std::string text) {
  FaultBetween& between = between_.emplace_back();
  between.fault = {at_, std::move(text), false};
  between.table = table_.label;
  between.afterHand = lastNumber_;
}

/// A command of a hand that is not there.
void TableFollower::outside(std::string_view what) {
  // Once: the hand's beginning was lost, and all else of it follows.
  if (std::exchange(isBetween_, false)) faultBetween(std::string(what) + " comes, but no hand has begun");
}

void TableFollower::on(const SrvUpdateHintText& command) {
  if (command.id() != kHandNumberHint) return;
  const std::string& text = command.hint();
  std::uint64_t number = 0;
  if (std::from_chars(text.data(), text.data() + text.size(), number).ec != std::errc()) number = 0;
  if (hand_ != nullptr && hand_->view.isWhole()) {
    faultBetween("hand " + std::to_string(number) + " begins, but hand " + std::to_string(hand_->view.number()) +
                 " is not over");
    last_.reset();
  }
  leaveHand();
  number_ = number;
}

void TableFollower::on(const SrvGameStart& command) {
  if (hand_ != nullptr) {
    hand_->audit.report(at_, "a hand begins, but the last one is not over");
    leaveHand();
    last_.reset();
  }
  // The capture begins here: which hand this is was told before.
  if (!number_ && lastNumber_ == 0 && table_.seats == 0) return;
  const std::uint64_t number = std::exchange(number_, {}).value_or(0);
  hand_ = std::make_shared<SeenHand>(connection_, table_, seats_, ownSeat_, number, command.getSeats());
  if (time_) hand_->view.setBegan(COleDateTime::fromTimeT(*time_ / 1'000'000'000));
  own_.asked.reset();
  own_.answers = 0;
  own_.chosen = std::exchange(chosenNow_, 0);
  isBetween_ = false;
  events_.onBegin(*this, hand_);
  hand_->audit.begin(at_, lastNumber_);
  if (last_ != nullptr && !isScripted_) hand_->audit.follow(last_->view);
  isScripted_ = false;
  PublicWord word = wordOf<SrvGameStart>();
  Meaning meaning;
  meaning.add(number);
  for (const SeatID& seat : command.getSeats()) meaning.add(seat);
  word.meaning = meaning.value();
  add(word);
}

void TableFollower::add(PublicWord word) {
  word.at = at_;
  // What a word says of itself is part of its meaning.
  Meaning meaning;
  for (const char c : word.command) meaning.add(static_cast<std::uint64_t>(static_cast<unsigned char>(c)));
  word.meaning = meaning.add(word.meaning)
                     .add(word.seat)
                     .add(std::uint64_t{actionBit(word.action)})
                     .add(word.first)
                     .add(word.second)
                     .value();
  hand_->meaning = Meaning().add(hand_->meaning).add(word.meaning).value();
  hand_->words.push_back(word);
}

/// Who was not told where it sits, because the capture begins later, sits where it sees cards.
void TableFollower::learnSeat(const UserCardsInfoVector& hands) {
  if (knowsSeat_) return;
  SeatID seat;
  for (const UserCardPack& pack : hands) {
    const bool isSeen = std::any_of(pack.cards().begin(), pack.cards().end(), [](const Card& card) {
      return card.visibility() == Card::Visibility::HiddenOwner;
    });
    if (!isSeen) continue;
    if (seat.isValid()) return;
    seat = pack.getSeatID();
  }
  if (!seat.isValid()) return;
  ownSeat_ = seat;
  knowsSeat_ = true;
  hand_->view.setViewer(seat);
}

template <class T>
void TableFollower::told(const T& command) {
  if (hand_ == nullptr) return outside(CommandInfo<T>::name);
  if constexpr (std::is_same_v<T, SrvCardDeal>) learnSeat(command.getHands());
  if constexpr (std::is_same_v<T, SrvUserActionNotify>) {
    OwnTurn own = own_;
    own.hearsClient = own_.hearsClient && hand_->view.isWhole();
    hand_->audit.check(at_, command, own);
    if (command.getSeatID() == ownSeat_) {
      own_.asked.reset();
      own_.answers = 0;
    }
  } else {
    hand_->audit.check(at_, command);
  }
  add(wordOf(command));
  if constexpr (std::is_same_v<T, SrvCardDeal>) hand_->dealtAt = at_;
  if constexpr (requires { hand_->view.apply(command); }) hand_->view.apply(command);
  if constexpr (requires { hand_->audit.applied(command); }) hand_->audit.applied(command);
}

void TableFollower::on(const SrvUserTurn& command) {
  if (hand_ == nullptr) return outside(CommandInfo<SrvUserTurn>::name);
  hand_->audit.check(at_, command);
  if (command.getSeatID() != ownSeat_ || !command.isNotify()) return;
  own_.asked = command.getTurns();
  own_.answers = 0;
}

void TableFollower::endHand() {
  if (hand_ == nullptr) return;
  for (const HandView::Player& player : hand_->view.players()) {
    for (TableSeat& seat : seats_) {
      if (seat.seat != player.seat) continue;
      seat.stack = hand_->audit.knowsStacks() ? player.stack : std::nullopt;
    }
  }
  lastNumber_ = hand_->view.number();
  last_ = hand_;
  isBetween_ = true;
  leaveHand();
}

}  // namespace poker
