// The client: a person at the terminal, an onlooker, a bot, somebody who asks for something, or a script that is played
// against a server.

#include <examples/holdem/client/PlayerOptions.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
  using namespace poker::holdem;

  CLI::App app(
      "The hold'em client. Exits with 0 when all ended in order, 1 when something did not come as expected or was "
      "refused, 2 when there was no connection.");
  app.require_subcommand(1);
  // For the subcommands' options; parseOptions() sees to those of the program itself.
  app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
  const std::array commands = {addPlay(app),       addWatch(app),       addBot(app),
                               addLobby(app),      addHistory(app),     addProfile(app),
                               addPromotions(app), addTournaments(app), addRehearse(app)};
  if (const int status = parseOptions(app, argc, argv); status >= 0) return status;
  std::signal(SIGPIPE, SIG_IGN);  // whoever read the output may leave

  try {
    for (const Subcommand& command : commands) {
      if (command.app->parsed()) return command.run();
    }
    return kNoConnection;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "holdem-client: %s\n", error.what());
    return kNoConnection;
  }
}
