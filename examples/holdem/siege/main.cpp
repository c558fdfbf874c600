// The siege: a server under attack while honest clients play, killed and brought back; and a client against a malicious
// server. Exits with 0 when all bounds hold, 1 when one is broken, which is named, 2 for a wrong command line or when there
// could be no siege.

#include <examples/holdem/shared/Options.h>
#include <examples/holdem/siege/Siege.h>

#include <fmt/format.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

using namespace poker::holdem;

std::atomic<bool> stops = false;

/// Each connection is a descriptor, here and in the server, which inherits what is set here.
void raiseDescriptorLimit(std::size_t connections) {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  const rlim_t wanted = connections * 2 + 200;
  if (limit.rlim_cur >= wanted) return;
  if (limit.rlim_max < wanted) {
    throw std::runtime_error(fmt::format("{} connections need {} descriptors, and the system gives {} (ulimit -n)",
                                         connections, wanted, limit.rlim_max));
  }
  limit.rlim_cur = wanted;
  setrlimit(RLIMIT_NOFILE, &limit);
}

/// A folder that is gone at the end.
struct Folder {
  Folder() {
    std::string name = std::filesystem::temp_directory_path() / "siege-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for temporary files");
    path = name;
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  std::filesystem::path path;
};

std::string kindsForPeople() {
  std::string text = "Kinds of attacks:\n";
  for (const AttackKind& kind : attackKinds()) text += fmt::format("  {:<18}{}\n", kind.name, kind.does);
  return text;
}

}  // namespace

int main(int argc, char** argv) {
  SiegeSettings settings;
  std::string server, keep;
  unsigned seconds = static_cast<unsigned>(settings.seconds.count());
  bool asJson = false, noClient = false, noFaults = false;

  CLI::App app(
      "A server under attack while honest clients play, killed and brought back; a client against a malicious server.");
  app.footer(kindsForPeople());
  app.add_option("--connections", settings.connections, "in all: players, guests who do nothing, attackers")
      ->check(CLI::Range(10, 1'000'000).description(""))
      ->capture_default_str()
      ->type_name("N");
  app.add_option("--attackers", settings.attackers, "the share of them that attacks")
      ->check(CLI::Range(0.0, 1.0).description(""))
      ->capture_default_str()
      ->type_name("0..1");
  app.add_option("--attacks", settings.attacks, "which kinds, separated by commas; otherwise all")
      ->delimiter(',')
      ->type_name("KIND,...");
  app.add_option("--tables", settings.tables, "of six honest players")
      ->check(CLI::Range(1, 500).description(""))
      ->capture_default_str()
      ->type_name("N");
  addSeconds(app, "--pause", settings.pause, "that a player thinks");
  app.add_option("--seconds", seconds, "that are measured, half of them under attack")
      ->check(CLI::Range(2, 1'000'000).description(""))
      ->capture_default_str()
      ->type_name("N");
  app.add_option("--rounds", settings.rounds, "quiet time and attack in turn")
      ->check(CLI::Range(1, 100'000).description(""))
      ->capture_default_str()
      ->type_name("N");
  app.add_option("--kills", settings.kills, "so often the server is killed and comes back, at the ends of rounds")
      ->capture_default_str()
      ->type_name("N");
  app.add_option("--seed", settings.seed, "of everything that is drawn")->capture_default_str()->type_name("N");
  app.add_option("--server", server, "the server's program (otherwise the one beside this), or where one runs")
      ->type_name("PROGRAM|HOST:PORT");
  app.add_option("--latency-factor", settings.latencyFactor,
                 "bound of the p99 under attack against the quiet one; 0: none")
      ->check(CLI::NonNegativeNumber.description(""))
      ->capture_default_str()
      ->type_name("N");
  addSeconds(app, "--latency-floor", settings.latencyFloor, "a p99 that is fine in any case");
  app.add_flag("--no-client", noClient, "leave the client in peace");
  app.add_flag("--no-faults", noFaults, "no table is played through the fault proxy");
  app.add_option("--keep", keep, "leave the server's bank and logs in this folder")->type_name("DIR");
  app.add_flag("--json", asJson, "the report for programs");
  if (const int status = parseOptions(app, argc, argv); status >= 0) return status;
  std::signal(SIGPIPE, SIG_IGN);
  for (const int number : {SIGINT, SIGTERM}) std::signal(number, [](int) { stops = true; });

  const bool isTerminal = isatty(STDERR_FILENO) != 0;
  const auto clearLine = [&] {
    if (isTerminal) std::fputs("\r\x1b[K", stderr);
  };
  try {
    settings.seconds = std::chrono::seconds(seconds);
    settings.besiegesClient = !noClient;
    settings.playsThroughFaults = !noFaults;
    raiseDescriptorLimit(settings.connections);
    settings.server = Endpoint::parse(server);
    if (!settings.server) {
      settings.program =
          !server.empty() ? server
                          : std::filesystem::read_symlink("/proc/self/exe").replace_filename("holdem-server").string();
      if (access(settings.program.c_str(), X_OK) != 0)
        throw std::runtime_error("there is no program " + settings.program);
    }
    const Folder folder;
    settings.folder = folder.path;
    if (!keep.empty()) {
      std::filesystem::create_directories(keep);
      settings.folder = keep;
    }
    const Report report = besiege(
        settings,
        [&](const std::string& what) {
          if (!isTerminal) return;
          clearLine();
          std::fputs(what.c_str(), stderr);
          std::fflush(stderr);
        },
        stops);
    clearLine();
    std::fputs((asJson ? report.asJson() + '\n' : report.asText()).c_str(), stdout);
    return report.broken.empty() ? 0 : 1;
  } catch (const std::exception& error) {
    clearLine();
    std::fprintf(stderr, "holdem-siege: %s\n", error.what());
    return 2;
  }
}
