// The game server. It serves until SIGTERM or SIGINT, then drains; SIGUSR1 announces maintenance, SIGUSR2 stops tournaments.

#include <CommandProcessor/pool/DebugStaticLogger.h>
#include <LogUtil/Log.h>
#include <examples/holdem/server/Server.h>
#include <examples/holdem/server/TableText.h>
#include <examples/holdem/server/capture/FrameRecorder.h>
#include <examples/holdem/server/tournament/TourText.h>
#include <examples/holdem/shared/LogLine.h>
#include <examples/holdem/shared/MoneyText.h>
#include <examples/holdem/shared/Options.h>

#include <asio/signal_set.hpp>

#ifndef _WIN32
#include <sys/resource.h>
#endif

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace {

using namespace poker;
using namespace poker::holdem;

/// Whoever waits for the file to be there finds the whole number in it.
void writePortFile(const std::string& path, std::uint16_t port) {
  const std::string unfinished = path + ".new";
  {
    std::ofstream file(unfinished);
    file << port << '\n';
    file.flush();
    if (!file) throw std::runtime_error("cannot write " + unfinished);
  }
  std::filesystem::rename(unfinished, path);
}

/// Every connection is a descriptor. What the system lets a program have without asking is often less than what it lets it
/// have; with too few, connections wait to be taken.
void raiseDescriptorLimit(std::size_t connections) {
#ifdef RLIMIT_NOFILE
  constexpr rlim_t kOthers = 200;
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  const rlim_t wanted = connections + kOthers;
  if (limit.rlim_cur >= wanted) return;
  limit.rlim_cur = std::min(wanted, limit.rlim_max);
  setrlimit(RLIMIT_NOFILE, &limit);
  if (limit.rlim_cur < wanted) {
    logLine(*Log::getLog("holdem.server", LogCategory::Network), 0, "few-descriptors limit={} wanted={}",
            limit.rlim_cur, wanted);
  }
#endif
}

/// Runs the server until it has drained.
/// @param recordFile  where all frames go; empty: nowhere
/// @return whether no chip was lost
bool serve(const ServerSettings& settings, const std::string& portFile, Transcript* transcript,
           const std::string& recordFile) {
  asio::io_context context(1);
  std::unique_ptr<FrameRecorder> recorder;
  if (!recordFile.empty()) recorder = std::make_unique<FrameRecorder>(context, recordFile);
  const auto listening = [&] {
    try {
      return std::make_unique<Server>(context, settings, transcript, recorder.get());
    } catch (const std::system_error& error) {
      // Nothing is in it, and it would be in the way of the next try.
      if (std::exchange(recorder, nullptr)) std::filesystem::remove(recordFile);
      throw std::runtime_error("cannot listen at " + settings.listen.toString() + ": " + error.what());
    }
  }();
  Server& server = *listening;
  asio::signal_set signals(context, SIGINT, SIGTERM);
#ifdef SIGUSR1
  signals.add(SIGUSR1);
  signals.add(SIGUSR2);
#endif

  std::function<void()> nextSignal = [&] {
    signals.async_wait([&](const std::error_code& cancelled, int number) {
      if (cancelled) return;
#ifdef SIGUSR1
      if (number == SIGUSR1) {
        server.announceMaintenance();
      } else if (number == SIGUSR2) {
        server.toggleTournaments();
      } else  // of those that end it, a second one does so at once
#endif
        server.drain();
      nextSignal();
    });
  };
  nextSignal();

  server.start([&] {
    signals.cancel();
    if (recorder) recorder->finish();
  });
  if (!portFile.empty()) writePortFile(portFile, server.port());
  context.run();
  if (server.failure()) std::rethrow_exception(server.failure());
  server.totals().log(*Log::getLog("holdem.totals", LogCategory::Network));
  return server.house().report();
}

/// Amounts as money is written: "12.50".
CLI::Option* addMoney(CLI::App& app, const std::string& name, RealMoneyType& value, const std::string& help) {
  return app
      .add_option_function<std::string>(
          name, [&value](const std::string& text) { value = RealMoneyType::fromText(text); }, help)
      ->check(
          [](const std::string& text) { return moneyFromText(text) ? "" : "\"" + text + "\" is no amount of money"; })
      ->default_str(value.toString())
      ->type_name("MONEY");
}

/// What all tables have in common, those that are of another kind, and tournaments.
struct TableOptions {
  TableSettings table;
  unsigned tables = 1;
  std::vector<std::string> others;
  std::vector<std::string> tournaments;
  CLI::Option* tablesGiven = nullptr;
  std::uint64_t seed = 0;
  double rakePercent = 5;
  CLI::Option* seedGiven = nullptr;

  void addTo(CLI::App& app) {
    static const std::map<std::string, LimitType> kLimits = {{"no-limit", LimitType::NoLimit},
                                                             {"fixed-limit", LimitType::FixedLimit}};
    table.stakes.rake.cap = RealMoneyType::fromUnits(3);
    tablesGiven = app.add_option("--tables", tables, "how many of the kind that the options below tell")
                      ->check(CLI::Range(0u, static_cast<unsigned>(kMostTables)).description(""))
                      ->capture_default_str();
    app.add_option(
           "--table", others,
           "one of another kind, as often as wanted: \"name=River,game=fixed-limit,blinds=1/2,seats=6,"
           "buy-in=40/200,password=x\"; what is not said there is as the options below tell. Without --tables there "
           "are only these then")
        ->allow_extra_args(false)
        ->type_name("KEY=VALUE,...");
    app.add_option(
           "--tournament", tournaments,
           "one that is announced, as often as wanted: \"name=Sunday,players=4-90,start=600,buy-in=10+1\"; game, seats "
           "and times that are not said there are as the options below tell. Without --tables there are no tables of "
           "their kind then. "
           "Keys: name, about, game, seats, players, password, invited, most-wins, opens, start, start-with, seating, "
           "buy-in, guaranteed, prizes, chips, blinds, levels, level, break, rebuys, rebuy, add-on, reply-time, "
           "hand-pause, rebuy-time, absent-time")
        ->allow_extra_args(false)
        ->type_name("KEY=VALUE,...");
    app.add_option_function<std::string>(
           "--game", [this](const std::string& name) { table.stakes.limit = kLimits.at(name); }, "what is played")
        ->check(CLI::IsMember({"no-limit", "fixed-limit"}))
        ->default_str("no-limit")
        ->type_name("");
    app.add_option("--seats", table.seats, "a table")
        ->check(CLI::Range(std::size_t{2}, kMaxSeats).description(""))
        ->capture_default_str()
        ->type_name("N");
    addMoney(app, "--small-blind", table.stakes.smallBlind, "");
    addMoney(app, "--big-blind", table.stakes.bigBlind, "");
    addMoney(app, "--min-buy-in", table.minBuyIn, "the least that a player brings");
    addMoney(app, "--max-buy-in", table.maxBuyIn, "the most");
    app.add_option("--rake", rakePercent, "of each pot that sees a flop, in per cent")
        ->check(CLI::Range(0.0, 100.0).description(""))
        ->capture_default_str()
        ->type_name("PERCENT");
    addMoney(app, "--rake-cap", table.stakes.rake.cap, "the most that is taken of a hand");
    app.add_option("--table-password", table.password, "of all tables")->type_name("TEXT");
    addSeconds(app, "--reply-time", table.replyTime, "for a turn");
    addSeconds(app, "--hand-pause", table.handPause, "between two hands");
    addSeconds(app, "--rebuy-time", table.rebuyTime, "that a table waits for a player whose chips are gone");
    addSeconds(app, "--keep-seat", table.keepSeat, "for a player who is away or sits out");
    app.add_option("--start-with", table.startWith, "players that the first hand waits for")
        ->check(CLI::Range(std::size_t{2}, kMaxSeats).description(""))
        ->capture_default_str()
        ->type_name("N");
    app.add_option("--hands", table.mostHands,
                   "a table closes after so many, and the server ends with the last table; 0: never")
        ->capture_default_str()
        ->type_name("N");
    seedGiven = app.add_option("--seed", seed, "for cards that can be repeated; otherwise nobody can foresee them")
                    ->type_name("N");
    app.add_flag("--script", table.takesScripts, "let clients stack the deck (ClScriptSetDealer); for tests");
  }

  /// @throws std::invalid_argument  for texts that are no tables, and settings that contradict each other
  std::vector<TableSettings> settings() {
    table.stakes.rake.perTenThousand = std::llround(rakePercent * 100);
    if (seedGiven->count() != 0) table.seed = seed;
    std::vector<TableSettings> all;
    const auto usual = [&] {
      table.gameID = static_cast<std::uint32_t>(all.size() + 1);
      table.name = "Table " + std::to_string(table.gameID);
      return table;
    };
    const bool hasNoOthers = others.empty() && tournaments.empty();
    if (hasNoOthers || tablesGiven->count() != 0) {
      checkTable(table);
      while (all.size() < tables) all.push_back(usual());
    }
    for (const std::string& text : others) all.push_back(tableFromText(text, usual()));
    if (all.empty() && tournaments.empty()) throw std::invalid_argument("a house needs a table or a tournament");
    return all;
  }

  /// @throws std::invalid_argument  as settings() does
  std::vector<TourSettings> tourSettings() const {
    TourSettings usual;
    usual.limit = table.stakes.limit;
    usual.seats = table.seats;
    usual.replyTime = table.replyTime;
    usual.handPause = table.handPause;
    usual.rebuyTime = table.rebuyTime;
    if (seedGiven->count() != 0) usual.seed = seed;
    std::vector<TourSettings> all;
    for (const std::string& text : tournaments) {
      usual.name = "Tournament " + std::to_string(all.size() + 1);
      all.push_back(tourFromText(text, usual));
    }
    return all;
  }
};

}  // namespace

int main(int argc, char** argv) {
  ServerSettings settings;
  TableOptions tables;
  Endpoint movedTo;
  std::string portFile, logFile, recordFile;
  unsigned logLevel = 0;
  bool wantsTranscript = false, dumpOnExit = false;
  Colour colour = Colour::Auto;

  CLI::App app(
      "The game server. SIGTERM or SIGINT: drain and end (twice: at once). SIGUSR1: announce maintenance. "
      "SIGUSR2: stop the tournaments, and let them go on.");
  addEndpoint(app, "--listen", settings.listen, "where to listen; port 0: the system chooses");
  app.add_option("--port-file", portFile, "written once the server listens: its port")->type_name("FILE");
  app.add_option("--max-connections", settings.maxConnections, "clients served at once")
      ->check(CLI::Range(0, 1'000'000).description(""))
      ->capture_default_str()
      ->type_name("N");
  app.add_option("--current-version", settings.currentVersion, "older clients are told to upgrade")
      ->capture_default_str()
      ->type_name("N");
  app.add_option("--minimum-version", settings.minimumVersion, "older clients are not served")
      ->capture_default_str()
      ->type_name("N");
  app.add_option("--version-text", settings.versionText, "what they are told beside the standard text")
      ->type_name("TEXT");
  CLI::Option* moved = addEndpoint(app, "--moved-to", movedTo, "serve nobody: all clients are to go there");
  addSeconds(app, "--keep-alive", settings.limits.keepAlive, "how often clients send one; cut off after two missed");
  addSeconds(app, "--logon", settings.limits.logon, "how long it may take; 0: for ever");
  app.add_option("--frame-rate", settings.limits.rate.framesPerSecond,
                 "commands a second that are taken from a client; 0: all")
      ->check(CLI::NonNegativeNumber.description(""))
      ->capture_default_str()
      ->type_name("N");
  addSeconds(app, "--hand-shake", settings.limits.handShake, "how long it may take");
  addSeconds(app, "--whole-frame", settings.limits.wholeFrame, "from a command's first byte to its last");
  addSeconds(app, "--last-words", settings.limits.lastWords, "for a last command to go through");
  addSeconds(app, "--grace", settings.grace, "what is left to clients when maintenance begins");
  app.add_option("--database", settings.house.bank.file, "accounts, chips and hands; \":memory:\": gone at the end")
      ->capture_default_str()
      ->type_name("FILE");
  addMoney(app, "--welcome", settings.house.gift, "what a new account begins with");
  addMoney(app, "--high-hand-prize", settings.house.highHand.prize,
           "for the highest hand that is turned up; a promotion that is under way goes on as it began; 0: none");
  app.add_option("--high-hand-hands", settings.house.highHand.hands, "of all tables, that a promotion lasts")
      ->check(CLI::Range(1, 1'000'000'000).description(""))
      ->capture_default_str()
      ->type_name("N");
  app.add_option("--news", settings.house.news, "for the lobby: what is new in the house")->type_name("TEXT");
  addSeconds(app, "--invite-time", settings.house.inviteTime, "that a seat is held for a player who waited for it");
  tables.addTo(app);
  app.add_option("--most-tournaments", settings.house.mostTournaments, "that a player may be in at once")
      ->check(CLI::Range(1, 100).description(""))
      ->capture_default_str()
      ->type_name("N");
  app.add_option("--announcement", settings.announcement, "what clients are told at SIGUSR1")->type_name("TEXT");
  app.add_option("--farewell", settings.farewell, "what clients are told when the server drains")->type_name("TEXT");
  app.add_option("--log", logFile, "log there and not to the standard error")->type_name("FILE");
  app.add_option("--log-level", logLevel, "0: connections; 1: commands too")
      ->check(CLI::Range(0, 1).description(""))
      ->capture_default_str()
      ->type_name("N");
  app.add_flag("--transcript", wantsTranscript, "show the conversation on the standard output");
  app.add_option(
         "--record", recordFile,
         "write all commands into a capture, without their secrets; a file that is there already is not touched")
      ->check(CLI::NonexistentPath.description(""))
      ->type_name("FILE");
  addColour(app, colour);
  app.add_flag("--dump-on-exit", dumpOnExit, "log the memory of the command pools at the end");
  if (const int status = parseOptions(app, argc, argv); status >= 0) return status;
  if (moved->count() != 0) settings.movedTo = movedTo;
#ifdef SIGPIPE
  std::signal(SIGPIPE, SIG_IGN);  // whoever read the transcript may leave; the game goes on
#endif

  try {
    Log::setLevel(logLevel);
    const std::filesystem::path logFolder = std::filesystem::path(logFile).parent_path();
    if (!logFolder.empty() && !std::filesystem::is_directory(logFolder)) {
      throw std::runtime_error("there is no folder " + logFolder.string());
    }
    if (!logFile.empty() && !Log::logToFile(logFile)) throw std::runtime_error("cannot write " + logFile);
    std::unique_ptr<Transcript> transcript;
    if (wantsTranscript) transcript = std::make_unique<Transcript>(stdout, wantsColour(colour, stdout));
    settings.house.tables = tables.settings();
    settings.house.tournaments = tables.tourSettings();
    if (settings.house.inviteTime.count() == 0) throw std::runtime_error("the invite time must be above 0");
    raiseDescriptorLimit(settings.maxConnections);
    const bool sound = serve(settings, portFile, transcript.get(), recordFile);
    if (dumpOnExit) DebugStaticLogger::instance()->dumpDataIntoLog("holdem.pools");
    if (!sound) throw std::runtime_error("chips are lost or came from nowhere; the log has the sums");
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "holdem-server: %s\n", error.what());
    return 1;
  }
}
