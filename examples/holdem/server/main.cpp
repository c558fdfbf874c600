// The game server. It serves until SIGTERM or SIGINT, then drains; SIGUSR1 announces maintenance.

#include <CommandProcessor/pool/DebugStaticLogger.h>
#include <LogUtil/Log.h>
#include <examples/holdem/server/Server.h>
#include <examples/holdem/shared/Options.h>

#include <asio/signal_set.hpp>

#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>

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

/// Runs the server until it has drained.
void serve(const ServerSettings& settings, const std::string& portFile, Transcript* transcript) {
  asio::io_context context(1);
  const auto listening = [&] {
    try {
      return std::make_unique<Server>(context, settings, transcript);
    } catch (const std::system_error& error) {
      throw std::runtime_error("cannot listen at " + settings.listen.toString() + ": " + error.what());
    }
  }();
  Server& server = *listening;
  asio::signal_set signals(context, SIGINT, SIGTERM);
#ifdef SIGUSR1
  signals.add(SIGUSR1);
#endif

  std::function<void()> nextSignal = [&] {
    signals.async_wait([&](const std::error_code& cancelled, int number) {
      if (cancelled) return;
#ifdef SIGUSR1
      if (number == SIGUSR1) {
        server.announceMaintenance();
        nextSignal();
        return;
      }
#endif
      server.drain([&] { signals.cancel(); });
      nextSignal();  // a second one ends the grace
    });
  };
  nextSignal();

  server.start();
  if (!portFile.empty()) writePortFile(portFile, server.port());
  context.run();
  server.totals().log(*Log::getLog("holdem.totals", LogCategory::Network));
}

}  // namespace

int main(int argc, char** argv) {
  ServerSettings settings;
  Endpoint movedTo;
  std::string portFile, logFile;
  unsigned logLevel = 0;
  bool wantsTranscript = false, dumpOnExit = false;
  Colour colour = Colour::Auto;

  CLI::App app("The game server. SIGTERM or SIGINT: drain and end (twice: at once). SIGUSR1: announce maintenance.");
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
  addSeconds(app, "--hand-shake", settings.limits.handShake, "how long it may take");
  addSeconds(app, "--whole-frame", settings.limits.wholeFrame, "from a command's first byte to its last");
  addSeconds(app, "--last-words", settings.limits.lastWords, "for a last command to go through");
  addSeconds(app, "--grace", settings.grace, "what is left to clients when maintenance begins");
  app.add_option("--announcement", settings.announcement, "what clients are told at SIGUSR1")->type_name("TEXT");
  app.add_option("--farewell", settings.farewell, "what clients are told when the server drains")->type_name("TEXT");
  app.add_option("--log", logFile, "log there and not to the standard error")->type_name("FILE");
  app.add_option("--log-level", logLevel, "0: connections; 1: commands too")
      ->check(CLI::Range(0, 1).description(""))
      ->capture_default_str()
      ->type_name("N");
  app.add_flag("--transcript", wantsTranscript, "show the conversation on the standard output");
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
    serve(settings, portFile, transcript.get());
    if (dumpOnExit) DebugStaticLogger::instance()->dumpDataIntoLog("holdem.pools");
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "holdem-server: %s\n", error.what());
    return 1;
  }
}
