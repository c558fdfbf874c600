// A hand looks like this:
//
//    ━━ Hand 12 ━━ button Cy
//      stacks    Ann 198.50 · Ben 203 · Cy 97.50
//      blinds    Ann posts 1 · Ben posts 2
//      preflop   Cy raises to 6 · Ann folds · Ben calls 4
//      flop      [7♥ T♠ 2♦] pot 13 · Ben checks · Cy bets 6 · Ben folds
//      the end   Cy wins 13, nobody calls

#include <examples/holdem/client/terminal/TableScreen.h>

#include <examples/holdem/client/terminal/PromotionText.h>
#include <examples/holdem/client/terminal/Text.h>
#include <examples/holdem/game/CardText.h>
#include <examples/holdem/game/HandValue.h>

#include <fmt/color.h>
#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace poker::holdem {

namespace {

constexpr std::size_t kLabelWidth = 10;
constexpr std::size_t kIndent = 2;
constexpr unsigned kBarWidth = 20;
constexpr std::size_t kLeastForBar = 80;
constexpr std::string_view kJoint = " · ";

fmt::text_style styleOf(Card::Suit suit) {
  using fmt::terminal_color;
  switch (suit) {
    case Card::Suit::Heart:
      return fmt::fg(terminal_color::red);
    case Card::Suit::Diamond:
      return fmt::fg(terminal_color::blue);
    case Card::Suit::Club:
      return fmt::fg(terminal_color::green);
    default:
      return {};
  }
}

std::string_view roundName(std::size_t boardCards) {
  switch (boardCards) {
    case 3:
      return "flop";
    case 4:
      return "turn";
    case 5:
      return "river";
    default:
      return "board";
  }
}

bool isShown(const CardVector& cards) {
  return !cards.empty() && std::all_of(cards.begin(), cards.end(),
                                       [](const Card& card) { return card.visibility() == Card::Visibility::Shown; });
}

/// "bets 6", "calls 4 and is all-in". Empty for what need not be told.
std::string inWords(const SrvUserActionNotify& command, const ClientSeatState& before) {
  const RealMoneyType added = before.money - command.getFreeMoney();
  std::string words;
  switch (command.getActionCode()) {
    case UserAction::NoAction:
      return added < kZeroMoney ? fmt::format("takes {} back", (kZeroMoney - added).toString()) : "";
    case UserAction::Ante:
    case UserAction::SmallBlind:
    case UserAction::BigBlind:
    case UserAction::Post:
    case UserAction::Straddle:
      words = "posts " + added.toString();
      break;
    case UserAction::Bet:
      words = "bets " + added.toString();
      break;
    case UserAction::Call:
      words = "calls " + added.toString();
      break;
    case UserAction::Raise:
      words = "raises to " + command.getTableMoney().toString();
      break;
    case UserAction::AllIn:
      return fmt::format("is all-in with {}", command.getTableMoney().toString());
    default:
      return actionCodeToStringForChat(command.getActionCode());
  }
  if (command.getFreeMoney() == kZeroMoney) words += " and is all-in";
  return words;
}

}  // namespace

TableScreen::TableScreen(asio::io_context& context, PlayerSettings player, ScreenSettings settings)
    : settings_(settings), width_(widthOf(stdout)), client_(context, std::move(player), *this) {}

// Lines

std::string TableScreen::toText(std::span<const Card> cards) const {
  std::string text = "[";
  for (const Card& card : cards) {
    if (text.size() > 1) text += ' ';
    const std::string face = holdem::toText(card);
    text += settings_.colour ? fmt::format(styleOf(card.suit()), "{}", face) : face;
  }
  return text += ']';
}

std::string TableScreen::bold(std::string_view text) const {
  return settings_.colour ? fmt::format(fmt::emphasis::bold, "{}", text) : std::string(text);
}

void TableScreen::write(std::string_view line) {
  const bool hasStatus = !status_.empty();
  fmt::print("{}{}\n{}", hasStatus ? "\r\x1B[K" : "", line, status_);
  std::fflush(stdout);
}

void TableScreen::setStatus(std::string status) {
  if (!settings_.isTerminal || settings_.live || (status.empty() && status_.empty())) return;
  status_ = std::move(status);
  fmt::print("\r\x1B[K{}", status_);
  std::fflush(stdout);
}

void TableScreen::begin(std::string_view label) {
  flush();
  line_ = fmt::format("{:{}}{:<{}}", "", kIndent, label, kLabelWidth);
  lineIsEmpty_ = true;
}

void TableScreen::add(const std::string& part) {
  if (part.empty()) return;
  if (line_.empty()) begin("");
  const bool fits = columnsOf(line_) + kJoint.size() + columnsOf(part) <= width_;
  if (!lineIsEmpty_ && (settings_.live || !fits)) begin("");
  if (!lineIsEmpty_) line_ += kJoint;
  line_ += part;
  lineIsEmpty_ = false;
  if (settings_.live) flush();
}

void TableScreen::flush() {
  if (!lineIsEmpty_) write(line_);
  line_.clear();
  lineIsEmpty_ = true;
}

void TableScreen::print(std::string_view text) {
  if (!lineIsEmpty_) flush();  // a label waits for what it is the label of
  write(text);
}

void TableScreen::printForeign(std::string_view who, std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\n\r"), text.size());
    if (end != 0) print(fmt::format("{:{}}{}{}", "", kIndent, who, escaped(text.substr(0, end))));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

void TableScreen::finish() {
  flush();
  setStatus({});
}

std::string TableScreen::progress() const {
  if (settings_.hands == 0 || width_ < kLeastForBar) return fmt::format("hand {}", handsSeen_ + 1);
  std::string bar;
  const unsigned done = handsSeen_ * kBarWidth / settings_.hands;
  for (unsigned i = 0; i < kBarWidth; ++i) bar += i < done ? "▓" : "░";
  return fmt::format("hand {} of {} {}", std::min(handsSeen_ + 1, settings_.hands), settings_.hands, bar);
}

// What happens

std::string TableScreen::nameOf(SeatID seat) const {
  const ClientSeatState* state = picture().seat(seat);
  return state == nullptr ? fmt::format("seat {}", seat.value()) : escaped(state->displayName);
}

std::string TableScreen::valueOf(std::span<const Card> cards) const {
  const CardVector& board = picture().state().board;
  if (cards.size() + board.size() < 5 || cards.size() != 2) return {};
  try {
    return HandValue::best(cards, board).toString();
  } catch (const std::invalid_argument&) {
    return {};  // cards that nobody can have
  }
}

void TableScreen::onTableState() {
  const ClientTableState& table = picture().state();
  const auto held = std::count_if(table.seats.begin(), table.seats.end(),
                                  [](const ClientSeatState& seat) { return seat.state == UserState::Reserved; });
  print(fmt::format("{}: {}, blinds {} and {}, {} of {} seats taken{}", bold(escaped(table.tableName)),
                    table.limitType == LimitType::FixedLimit ? "fixed limit" : "no limit", table.smallBlind.toString(),
                    table.bigBlind.toString(), std::ssize(table.seats) - held, table.maxSeats,
                    held == 0 ? "" : fmt::format(", {} held", held)));
  if (!table.board.empty()) print(fmt::format("  hand {} is on, {}", table.handNumber, toText(table.board)));
}

void TableScreen::onHandBegins() { flush(); }

void TableScreen::onDealer() {
  const ClientTableState& table = picture().state();
  print(fmt::format("\n{} button {}", bold(fmt::format("━━ Hand {} ━━", table.handNumber)), nameOf(table.dealerSeat)));
  begin("stacks");
  std::string stacks;
  for (const ClientSeatState& seat : table.seats) {
    if (seat.state != UserState::Playing) continue;
    const std::string stack = fmt::format("{} {}", escaped(seat.displayName), seat.money.toString());
    if (settings_.live) {
      stacks += stacks.empty() ? stack : fmt::format("{}{}", kJoint, stack);
    } else {
      add(stack);
    }
  }
  add(stacks);
  begin("blinds");
}

void TableScreen::onAction(const SrvUserActionNotify& command, const ClientSeatState& before) {
  const std::string words = inWords(command, before);
  if (!words.empty()) add(fmt::format("{} {}", nameOf(command.getSeatID()), words));
}

void TableScreen::onCardsDealt(const SrvCardDeal&) {
  begin("preflop");
  const ClientSeatState* own = picture().ownSeat();
  if (own != nullptr && !own->cards.empty()) add("you have " + toText(own->cards));
}

void TableScreen::onTurnOf(SeatID seat, std::chrono::seconds time) {
  setStatus(fmt::format("{}{}{}'s turn ({} s)", progress(), kJoint, nameOf(seat), time.count()));
}

void TableScreen::onBoard(const SrvPotCardDeal&) {
  const ClientTableState& table = picture().state();
  begin(roundName(table.board.size()));
  add(fmt::format("{} pot {}", toText(table.board), table.pot.total().toString()));
}

void TableScreen::onCardsShown(const SrvShowPlayerCards& command) {
  // With the whole board there, the show-down tells it, and what they are worth.
  if (picture().state().board.size() < 5) {
    add(fmt::format("{} turns up {}", nameOf(command.seatID()), toText(command.cards())));
  }
}

std::string TableScreen::tell(const SDInfo& player) const {
  const std::string name = nameOf(player.getSeatID());
  const std::string won = player.getMoney().toString();
  const bool wins = player.getMoney() > kZeroMoney;
  if (player.winnerType() == SDInfo::Uncalled) {
    const std::string shows = isShown(player.cards()) ? fmt::format(", and shows {}", toText(player.cards())) : "";
    return fmt::format("{} wins {}, nobody calls{}", name, won, shows);
  }
  if (!isShown(player.cards())) return wins ? fmt::format("{} wins {}", name, won) : name + " mucks";
  const std::string value = valueOf(player.cards());
  const std::string worth = value.empty() ? value : ", " + value;
  return fmt::format("{} {} {}{}", name, wins ? fmt::format("wins {} with", won) : "shows", toText(player.cards()),
                     worth);
}

void TableScreen::onShowDown(const SrvTUShowDown& command) {
  for (const SDInfo& player : command.getUserCards()) {
    begin(&player == &command.getUserCards()[0] ? "the end" : "");
    add(tell(player));
  }
  if (command.casinoProfit() > kZeroMoney) add("rake " + command.casinoProfit().toString());
  flush();
  ++handsSeen_;
  if (settings_.hands == 0 || settings_.isTerminal || settings_.live) return;
  const unsigned before = (handsSeen_ - 1) * 10 / settings_.hands;
  if (handsSeen_ <= settings_.hands && handsSeen_ * 10 / settings_.hands != before) {
    fmt::print(stderr, "{} of {} hands\n", handsSeen_, settings_.hands);
  }
}

void TableScreen::onSeatChange(const SrvUserStateOnTable& command, const ClientSeatState* before) {
  const UserState now = command.state();
  const UserState was = before == nullptr ? UserState::Empty : before->state;
  const std::string name =
      escaped(now == UserState::Empty && before != nullptr ? before->displayName : command.getDisplayName());
  const auto isAway = [](UserState state) {
    return state == UserState::SittingOut || state == UserState::Disconnected;
  };
  if (now == UserState::Reserved || (now == UserState::Empty && was == UserState::Reserved)) {
    if (was == now) return;
    const std::string seat = fmt::format("seat {}", command.getSeatID().value());
    if (now == UserState::Empty) return print(fmt::format("{:{}}{} is free again", "", kIndent, seat));
    return print(fmt::format("{:{}}{} is held for {}", "", kIndent, seat, name.empty() ? "who waited longest" : name));
  }
  std::string what;
  if (was == UserState::Empty || was == UserState::Reserved) {
    if (now == UserState::Empty) return;
    what = fmt::format("takes seat {} with {}", command.getSeatID().value(), command.getMoney().toString());
  } else if (now == UserState::Empty) {
    what = "leaves the table";
  } else if (now == UserState::Disconnected && was != now) {
    what = "has lost the connection";
  } else if (now == UserState::SittingOut && was != now) {
    what = "sits out";
  } else if (isAway(was) && !isAway(now)) {
    what = "is back";
  } else if (command.getMoney() > before->money) {
    what = fmt::format("brings {} more", (command.getMoney() - before->money).toString());
  } else {
    return;
  }
  print(fmt::format("{:{}}{} {}", "", kIndent, name, what));
}

void TableScreen::onChat(const SrvChatMsg& command) {
  printForeign(command.getSender().empty() ? "" : escaped(command.getSender()) + ": ", command.getMessage());
}

void TableScreen::onPromotion(const SrvPromoNotify& notice) {
  print(fmt::format("{:{}}{}", "", kIndent, promotionText(notice)));
}

void TableScreen::onPromotionWon(const SrvUserWonPromotion& winner) {
  print(fmt::format("{:{}}{} {}", "", kIndent, bold("★"), winnerText(winner)));
}

void TableScreen::onNotice(std::string_view text) { printForeign("", text); }

void TableScreen::onRefused(std::string_view why) { printForeign("", why); }

void TableScreen::onReconnecting(std::chrono::milliseconds pause) {
  print(fmt::format("  the connection is lost; again in {:.1f} s", std::chrono::duration<double>(pause).count()));
}

}  // namespace poker::holdem
