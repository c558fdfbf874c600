#include <examples/holdem/client/Later.h>
#include <examples/holdem/client/PlayerOptions.h>
#include <examples/holdem/client/lobby/LobbyPicture.h>
#include <examples/holdem/client/terminal/TableScreen.h>
#include <examples/holdem/shared/Protocol.h>

#include <fmt/format.h>

#include <fstream>
#include <memory>

#include <unistd.h>

namespace poker::holdem {

namespace {

constexpr std::chrono::seconds kPatience{10};  // for the table to be shown
constexpr std::chrono::milliseconds kLastWords{200};

struct Options : PlayerOptions {
  unsigned hands = 0;
  std::string readyFile;
  Colour colour = Colour::Auto;
};

/// Looks on, until the table is closed, the server ends or the hands are seen.
class Watch final : public TableScreen {
 public:
  Watch(asio::io_context& context, const Options& options, ScreenSettings screen)
      : TableScreen(context, options.player, screen),
        context_(context),
        options_(options),
        leave_(context),
        patience_(context) {}

  int status() const { return status_; }

 private:
  void onLoggedOn() override {
    TableScreen::onLoggedOn();
    patience_.in(kPatience, [this] {
      isTableMissing_ = true;
      client().leave();
    });
  }
  void onTableState() override {
    patience_.cancel();
    TableScreen::onTableState();
    if (!options_.readyFile.empty()) std::ofstream(options_.readyFile) << "ready\n";
    // The table itself does not say that it is closed; the list of tables does.
    lobby_ = {};
    client().send<ClGetServerInfo>(kRingGames, kNoList, 0u);
  }
  void onTables(const SrvServerInfo& command) override {
    lobby_.apply(command);
    if (isTournament_ || lobby_.table(options_.player.gameID) != nullptr) return;
    isTableClosed_ = true;
    client().leave();
  }
  // A tournament's table is on no list of tables. The server says at once what the level is, or what it waits for.
  void onLevelSwitch(const SrvLevelSwitch& command) override {
    isTournament_ = true;
    TableScreen::onLevelSwitch(command);
  }
  void onTourStartInfo(const SrvTourStartInfo& info) override {
    isTournament_ = true;
    TableScreen::onTourStartInfo(info);
  }
  void onTourStatus(const SrvTourTourneyStatus& command) override {
    if (!isTournament_ || command.status() != TOUR_NAMES::TourStatus::Finished) return;
    isTableClosed_ = true;
    client().leave();
  }
  void onShowDown(const SrvTUShowDown& command) override {
    TableScreen::onShowDown(command);
    // What the hand has decided beside the chips, such as a promotion, is told right after it.
    if (handsSeen() == options_.hands) leave_.in(kLastWords, [this] { client().leave(); });
  }
  void onEnd(PlayerEnd end, std::string_view why) override {
    finish();
    status_ = statusOf(end, why, "holdem-client watch");
    if ((end == PlayerEnd::Drained || isTableClosed_) && handsSeen() < options_.hands) {
      fmt::print(stderr, "holdem-client watch: the {} after {} of {} hands\n",
                 isTableClosed_ ? "table is closed" : "server has ended", handsSeen(), options_.hands);
      status_ = kNotAsExpected;
    }
    if (isTableMissing_) {
      fmt::print(stderr, "holdem-client watch: there is no table {}, or not now\n", options_.player.gameID);
      status_ = kNotAsExpected;
    }
    context_.stop();
  }

  asio::io_context& context_;
  const Options& options_;
  LobbyPicture lobby_;
  Later leave_;
  Later patience_;
  bool isTournament_ = false;
  bool isTableMissing_ = false;
  bool isTableClosed_ = false;
  int status_ = kNotAsExpected;
};

int run(Options& options) {
  options.player.password = passwordFrom(options.passwordFile);
  asio::io_context context(1);
  ScreenSettings screen;
  screen.colour = wantsColour(options.colour, stdout);
  screen.isTerminal = isatty(STDOUT_FILENO) != 0;
  screen.hands = options.hands;
  Watch watch(context, options, screen);
  const StopSignals signals(
      context, [&] { watch.client().leave(); }, [&] { context.stop(); });
  watch.client().start();
  context.run();
  return watch.status();
}

}  // namespace

Subcommand addWatch(CLI::App& parent) {
  const auto options = std::make_shared<Options>();
  options->player.name = "Onlooker";
  CLI::App& app = *parent.add_subcommand("watch", "Looks on at a table and tells what happens there.");
  addPlayer(app, *options);
  app.add_option("--hands", options->hands, "leave after so many; otherwise when the table is closed")->type_name("N");
  app.add_option("--ready-file", options->readyFile, "written when the table is before it")->type_name("FILE");
  addColour(app, options->colour);
  return {&app, [options] { return run(*options); }};
}

}  // namespace poker::holdem
