#include <examples/holdem/client/PlayerOptions.h>
#include <examples/holdem/client/lobby/LobbyText.h>
#include <examples/holdem/client/terminal/Choices.h>
#include <examples/holdem/client/terminal/LineReader.h>
#include <examples/holdem/client/terminal/TableScreen.h>
#include <examples/holdem/client/terminal/Text.h>
#include <examples/holdem/client/tournament/TourLobbyText.h>
#include <examples/holdem/shared/Protocol.h>

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <memory>
#include <utility>

#include <unistd.h>

namespace poker::holdem {

namespace {

constexpr std::string_view kHelp =
    "  at your turn   f fold   k check   c call   b 12 bet   r 24 raise   a all-in\n"
    "                 (amounts are what you add to what lies before you)\n"
    "  at any time    t TEXT or /chat TEXT   m chips, m 100 more of them\n"
    "                 s sit out   back plays again   post pays a blind, not wait\n"
    "                 l leave the seat   sit 3 take one\n"
    "                 wait queue at a full table\n"
    "                 take 100 or refuse a seat that is held for you\n"
    "                 lobby all tables   last hand in words\n"
    "                 h this help   q leave and end\n"
    "  in a tournament   rebuy or addon more chips   l sits out";

/// Our own lines, each a bit to the right.
std::string indented(std::string_view lines) {
  std::string text;
  for (bool atStart = true; const char c : lines) {
    if (std::exchange(atStart, c == '\n') && c != '\n') text += "  ";
    text += c;
  }
  return text;
}

struct Options : PlayerOptions {
  Colour colour = Colour::Auto;
};

/// A person's table.
class PlayTable final : public TableScreen {
 public:
  PlayTable(asio::io_context& context, const PlayerSettings& player, ScreenSettings screen)
      : TableScreen(context, player, screen), context_(context) {}

  /// What was typed.
  void take(std::string_view line);
  /// Nothing more will be typed.
  void takeEnd() {
    if (!leaving_) leave();
  }
  void leave();
  int status() const { return status_; }

 private:
  void onSeated(SeatID seat) override {
    print(fmt::format("  You have seat {}. h shows what you can type.", seat.value()));
  }
  void onUnseated() override {
    if (!leaving_) print("  You have no seat any more, and look on.");
  }
  void onTableState() override {
    TableScreen::onTableState();
    options_.clear();  // the turn is asked anew
    if (const ClientSeatState* seat = picture().ownSeat()) onSeated(seat->seatID);
  }
  void onTurn(const NextTurnOptions& options, std::chrono::seconds time) override;
  void onAction(const SrvUserActionNotify& command, const ClientSeatState& before) override {
    if (command.getSeatID() == picture().state().ownSeat) options_.clear();
    TableScreen::onAction(command, before);
  }
  void onMoney(const SrvMoney& command) override {
    print(fmt::format("  {} before you, {} in the account; you may bring {} to {}.", command.atTable().toString(),
                      command.available().toString(), command.minimum().toString(), command.maximum().toString()));
  }
  void onOutOfMoney(const OutOfMoney& command) override {
    printForeign("", command.err());
    print(client().isInTournament() ? "  rebuy brings more chips; without them you are out."
                                    : "  m 100 brings a hundred chips; without more the seat is lost.");
  }
  void onTourRegistration(const SrvTourRegisterResult& result) override {
    printForeign("", result.reasonStr());
    if (client().isRegistered()) print("  You take part. q before the seats are drawn takes that back.");
  }
  void onTourStatus(const SrvTourTourneyStatus& command) override {
    print(fmt::format("  tournament {}: {}", command.tourID(), statusText(command.status())));
  }
  void onTourStartInfo(const SrvTourStartInfo& info) override { printForeign("", info.infoText()); }
  void onLevelSwitch(const SrvLevelSwitch& level) override {
    const std::string text = levelText(level, picture().state().limitType);
    print("  " + (level.isSwitching() ? bold(text) : text));
  }
  void onTourMove(const SrvTourMoveToTable& command) override {
    // Who sits at a table stays there.
    print(fmt::format("  {} at table {}.", client().isInTournament() ? "You go on" : "Your tournament plays",
                      command.tableID()));
  }
  void onExtraMoney(const SrvGetExtraMoneyReply& reply) override { printForeign("", reply.reasonToString(false)); }
  void onTourPlayerFinished(const SrvTourPlayerFinished& command) override {
    printForeign(bold("★") + " ", command.getText());
  }
  void onTourOver() override {
    print("  The tournament is over for you.");
    if (!std::exchange(leaving_, true)) client().leave();
  }
  void onWaiting(std::uint32_t) override { print("  You wait for a seat here; wait once more ends it."); }
  void onWaitingOver(std::uint32_t) override {
    print(std::exchange(isInvited_, false) ? "  The seat is not held for you any more; wait queues you again."
                                           : "  You wait for a seat no more.");
  }
  void onInvitation(const SrvWaitList& command) override;
  void onRefused(std::string_view why) override {
    TableScreen::onRefused(why);
    const bool isOnTheWay = client().isWaiting() || client().invitation();
    if (picture().ownSeat() == nullptr && client().isFull() && !isOnTheWay) print("  wait queues you for a seat.");
  }
  void onTables(const SrvServerInfo& command) override { lookAtLobby(command, kList); }
  void onCounters(const SrvServerCountersInfo& command) override { lookAtLobby(command, kCounters); }
  void onNews(const SrvNews& command) override { lookAtLobby(command, kNews); }
  void onHandTexts(const SrvRplHandHistory& command) override;
  void onEnd(PlayerEnd end, std::string_view why) override {
    finish();
    status_ = statusOf(end, why, "holdem-client play");
    context_.stop();
  }
  bool isInHand() const {
    const ClientSeatState* seat = picture().ownSeat();
    return seat != nullptr &&
           (seat->state == UserState::Playing || seat->state == UserState::Folded || seat->state == UserState::AllIn);
  }
  void showTurn();
  void wait();
  void takeSeat(std::string_view amount);
  void askForLobby();
  template <class Command>
  void lookAtLobby(const Command& command, unsigned part);
  void askForLastHand();
  void takeChips(std::string_view amount);
  void sit(std::string_view seat);

  asio::io_context& context_;
  NextTurnOptions options_;  // of the own turn
  // What a look at the lobby has still to bring.
  static constexpr unsigned kList = 1, kCounters = 2, kNews = 4;
  unsigned lobbyRest_ = 0;
  bool isInvited_ = false;  // and has not answered
  LobbyPicture lobby_;
  bool leaving_ = false;
  int status_ = kNotAsExpected;
};

void PlayTable::showTurn() {
  const ClientTableState& table = picture().state();
  const ClientSeatState* seat = picture().ownSeat();
  if (seat == nullptr) return;
  RealMoneyType pot = table.pot.total();
  for (const ClientSeatState& each : table.seats) pot += each.bet;
  print(fmt::format("  {} {}{}  pot {}  stack {}  ({} s)\n  {}", bold("Your turn:"), toText(seat->cards),
                    table.board.empty() ? "" : "  board " + toText(table.board), pot.toString(), seat->money.toString(),
                    table.turnTimeLeft, choicesText(options_)));
}

void PlayTable::onTurn(const NextTurnOptions& options, std::chrono::seconds) {
  options_ = options;
  showTurn();
}

void PlayTable::leave() {
  if (std::exchange(leaving_, true)) return client().bye();
  if (client().isInTournament()) {
    if (client().isAtTable()) print("  Your chips stay in the tournament, and pay the blinds.");
  } else if (isInHand())
    print("  You leave as soon as the hand is over; once more, and you leave now.");
  client().leave();
}

void PlayTable::takeChips(std::string_view amount) {
  const std::optional<RealMoneyType> money = moneyFromText(amount);
  if (client().isInTournament()) {
    print("  Chips of a tournament are bought with rebuy and addon, when it sells any.");
  } else if (amount.empty()) {
    client().send<ClGetMoney>();
  } else if (money && *money != kZeroMoney && picture().ownSeat() != nullptr) {
    client().send<ClMoreMoney>(*money);
    if (isInHand()) print(fmt::format("  {} more come when the hand is over.", money->toString()));
  } else {
    print("  m takes an amount of chips, and a seat to bring them to.");
  }
}

void PlayTable::sit(std::string_view seat) {
  if (seat.empty()) return client().sitDown();
  const unsigned most = picture().state().maxSeats;
  unsigned number = most;
  const auto [end, failure] = std::from_chars(seat.data(), seat.data() + seat.size(), number);
  if (failure != std::errc() || end != seat.data() + seat.size() || number >= most) {
    return print(fmt::format("  Seats are numbered from 0 to {}.", most - 1));
  }
  client().sitDown(static_cast<std::uint8_t>(number));
}

void PlayTable::onInvitation(const SrvWaitList& command) {
  isInvited_ = true;
  const bool isHere = command.gameID() == picture().state().gameID;
  print(fmt::format("  {} A seat is held for you{}: take, take 100 or refuse.", bold("★"),
                    isHere ? "" : fmt::format(" at table {}", command.gameID())));
}

void PlayTable::wait() {
  if (client().isWaiting()) return client().stopWaiting();
  if (client().invitation()) return print("  A seat is held for you: take or refuse.");
  if (!client().isFull()) return print("  There is a free seat: sit takes it.");
  client().wait();
}

void PlayTable::takeSeat(std::string_view amount) {
  const std::optional<RealMoneyType> money = amount.empty() ? kZeroMoney : moneyFromText(amount);
  if (!client().invitation()) return print("  No seat is held for you.");
  if (!money) return print("  take takes an amount of chips.");
  client().acceptInvitation(*money);
}

void PlayTable::askForLobby() {
  lobby_ = {};
  lobbyRest_ = kList | kCounters | kNews;
  client().send<ClGetServerInfo>(kRingGames, kNoList, 0u);
}

template <class Command>
void PlayTable::lookAtLobby(const Command& command, unsigned part) {
  if (lobbyRest_ == 0) return;
  lobby_.apply(command);
  lobbyRest_ &= ~part;
  if (lobbyRest_ != 0) return;
  client().send<ClGetServerInfo>(kNoList, kRingGames, lobby_.version());
  for (const std::string& line : lobbyText(lobby_)) print(line);
}

void PlayTable::askForLastHand() {
  ReplayRequestInfo request;
  request.setMostHands(1);
  request.setGameID(picture().state().gameID);
  client().send<ClRplGetHandHistory>(request);
}

void PlayTable::onHandTexts(const SrvRplHandHistory& command) {
  if (command.getGames().empty()) print("  You have played no hand here yet.");
  for (const std::string& hand : command.getGames()) print(indented(escapedLines(hand)));
}

void PlayTable::take(std::string_view line) {
  if (line.empty()) return;
  const std::size_t blank = std::min(line.find(' '), line.size());
  const std::string_view word = line.substr(0, blank);
  const std::string_view rest = line.substr(std::min(blank + 1, line.size()));
  if (word == "h" || word == "help") return print(kHelp);
  if (word == "q" || word == "quit") return leave();
  if (!client().isAtTable()) return print("  You are not at the table.");
  if (client().isInTournament()) {
    if (word == "rebuy") return client().askForExtraMoney(ExtraMoneyRequest::Rebuy);
    if (word == "addon") return client().askForExtraMoney(ExtraMoneyRequest::AddOn);
  }
  if (word == "t" || word == "/chat") return client().chat(std::string(rest));
  if (word == "m") return takeChips(rest);
  if (word == "lobby") return askForLobby();
  if (word == "last") return askForLastHand();

  const ClientSeatState* seat = picture().ownSeat();
  if (seat == nullptr) {
    if (word == "sit") return sit(rest);
    if (word == "wait") return wait();
    if (word == "take") return takeSeat(rest);
    if (word == "refuse") {
      isInvited_ = false;
      return client().invitation() ? client().rejectInvitation() : print("  No seat is held for you.");
    }
    return print(fmt::format("  You have no seat: {}, h shows what else you can type.",
                             client().isFull() ? "wait queues you for one" : "sit takes one"));
  }
  const auto box = [this](UserAction action, bool on) {
    client().send<ClActionInAdvance>(actionBit(action), kZeroMoney, on);
  };
  if (word == "s" || (word == "l" && client().isInTournament())) {
    box(UserAction::SittingOut, true);
    print("  You sit out when the hand is over.");
  } else if (word == "back") {
    box(UserAction::SittingOut, false);
    if (seat->state == UserState::SittingOut) client().send<ClBack>();
  } else if (word == "post") {
    box(UserAction::Post, true);
  } else if (word == "l") {
    client().standUp();
    if (isInHand()) print("  You leave the seat when the hand is over.");
  } else if (options_.empty()) {
    print(isChoice(line) ? "  It is not your turn." : "  h shows what you can type.");
  } else {
    const Choice choice = choiceFromText(line, options_);
    if (!choice.complaint.empty()) return print("  " + choice.complaint);
    client().act(choice.action, choice.amount);
  }
}

int run(Options& options) {
  options.player.password = passwordOf(options.player.name, options.passwordFile);
  options.player.sitsDown = options.player.registersForTour = true;
  asio::io_context context(1);
  ScreenSettings screen;
  screen.colour = wantsColour(options.colour, stdout);
  screen.isTerminal = isatty(STDOUT_FILENO) != 0;
  screen.live = true;
  PlayTable table(context, options.player, screen);
  LineReader input(
      context, [&](std::string_view line) { table.take(line); }, [&] { table.takeEnd(); });
  const StopSignals signals(
      context, [&] { table.leave(); }, [&] { table.client().bye(); });
  table.client().start();
  context.run();
  return table.status();
}

}  // namespace

Subcommand addPlay(CLI::App& parent) {
  const auto options = std::make_shared<Options>();
  options->player.name = "Guest";
  CLI::App& app = *parent.add_subcommand("play", "Plays as you say; h at the table shows how.");
  addPlayer(app, *options);
  addSeat(app, options->player);
  addTournament(app, options->player);
  addColour(app, options->colour);
  return {&app, [options] { return run(*options); }};
}

}  // namespace poker::holdem
