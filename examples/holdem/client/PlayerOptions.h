#pragma once

#include <examples/holdem/client/PlayerClient.h>
#include <examples/holdem/shared/MoneyText.h>
#include <examples/holdem/shared/Options.h>

#include <asio/io_context.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace poker::holdem {

/// One thing that the client can do.
struct Subcommand {
  const CLI::App* app;
  std::function<int()> run;  ///< once the command line is parsed; @return the exit status
};

Subcommand addRehearse(CLI::App& app);
Subcommand addBot(CLI::App& app);
Subcommand addWatch(CLI::App& app);
Subcommand addPlay(CLI::App& app);
Subcommand addLobby(CLI::App& app);
Subcommand addHistory(CLI::App& app);
Subcommand addProfile(CLI::App& app);
Subcommand addPromotions(CLI::App& app);
Subcommand addTournaments(CLI::App& app);

// Exit statuses.
inline constexpr int kInOrder = 0;
inline constexpr int kNotAsExpected = 1;
inline constexpr int kNoConnection = 2;  // and a wrong command line

/// What everybody who logs on has to say on the command line.
struct PlayerOptions {
  PlayerSettings player;
  std::string passwordFile;
};
/// The server, the name, the password. The name that is there is the default.
void addHouse(CLI::App& app, VisitorSettings& player, std::string& passwordFile);
/// All of that, and the table.
void addPlayer(CLI::App& app, PlayerOptions& options);
/// The seat, and what to bring.
void addSeat(CLI::App& app, PlayerSettings& player);
/// The tournament that it registers for, in place of a table.
void addTournament(CLI::App& app, PlayerSettings& player);
/// An amount of chips above zero.
CLI::Option* addMoney(CLI::App& app, const std::string& name, RealMoneyType& value, const std::string& help);

/// The first line of the file; without a file, a new one that nobody can guess.
/// @throws std::runtime_error  there is no such file, or no password in it
std::string passwordFrom(const std::string& file);
/// As above, but without a file asks the person at the terminal, if there is one.
std::string passwordOf(const std::string& name, const std::string& file);

/// Tells why it ended on the standard error, unless it ended as it should.
/// @param program  "holdem-client bot"
/// @return the exit status
int statusOf(PlayerEnd end, std::string_view why, std::string_view program);

/// SIGINT and SIGTERM: the first one asks, the second one tells.
class StopSignals {
 public:
  StopSignals(asio::io_context& context, std::function<void()> first, std::function<void()> second);
  ~StopSignals();

 private:
  struct Signals;
  std::unique_ptr<Signals> signals_;
};

}  // namespace poker::holdem
