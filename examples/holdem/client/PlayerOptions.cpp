#include <examples/holdem/client/PlayerOptions.h>

#include <examples/holdem/client/terminal/LineReader.h>
#include <examples/holdem/client/terminal/Text.h>

#include <asio/signal_set.hpp>

#include <fmt/format.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <random>
#include <stdexcept>
#include <utility>

namespace poker::holdem {

void addHouse(CLI::App& app, VisitorSettings& player, std::string& passwordFile) {
  addEndpoint(app, "--connect", player.server, "the server")->required();
  app.add_option("--name", player.name, "of the account, as it is shown at the table")
      ->capture_default_str()
      ->type_name("NAME");
  app.add_option("--password-file", passwordFile, "its first line is the password")->type_name("FILE");
  app.add_flag("--register", player.registers, "make the account if there is none of that name");
  app.add_option("--reconnects", player.reconnects, "tries in a row to come back when the connection is lost")
      ->check(CLI::Range(0, 1000).description(""))
      ->capture_default_str()
      ->type_name("N");
  addSeconds(app, "--keep-alive", player.keepAlive, "how often to send one");
}

void addPlayer(CLI::App& app, PlayerOptions& options) {
  addHouse(app, options.player, options.passwordFile);
  app.add_option("--table", options.player.gameID, "the number of the table")->capture_default_str()->type_name("N");
  app.add_option("--table-password", options.player.tablePassword, "of a private table")->type_name("TEXT");
}

void addSeat(CLI::App& app, PlayerSettings& player) {
  app.add_option_function<unsigned>(
         "--seat", [&player](unsigned seat) { player.seat = static_cast<std::uint8_t>(seat); },
         "the seat, from 0; otherwise any that is free")
      ->check(CLI::Range(0, 99).description(""))
      ->type_name("N");
  addMoney(app, "--buy-in", player.buyIn, "what to bring; otherwise a hundred big blinds");
}

void addTournament(CLI::App& app, PlayerSettings& player) {
  app.add_option("--tournament", player.tournamentID, "register for the tournament of this number, and play there")
      ->check(CLI::Range(1u, UINT32_MAX).description(""))
      ->excludes("--table")
      ->type_name("N");
  app.add_option("--tournament-password", player.tournamentPassword, "of a protected tournament")->type_name("TEXT");
}

CLI::Option* addMoney(CLI::App& app, const std::string& name, RealMoneyType& value, const std::string& help) {
  const auto assign = [&value, name](const std::string& text) {
    const std::optional<RealMoneyType> money = moneyFromText(text);
    if (!money || *money == kZeroMoney) throw CLI::ValidationError(name, "not an amount of chips: " + text);
    value = *money;
  };
  return app.add_option_function<std::string>(name, assign, help)->type_name("CHIPS");
}

std::string passwordFrom(const std::string& file) {
  std::string password;
  if (file.empty()) {
    std::random_device random;
    for (int i = 0; i < 4; ++i) password += fmt::format("{:08x}", random());
    return password;
  }
  std::ifstream stream(file);
  if (!std::getline(stream, password) || password.empty()) throw std::runtime_error("no password in " + file);
  return password;
}

std::string passwordOf(const std::string& name, const std::string& file) {
  const std::optional<std::string> typed =
      file.empty() ? askPassword("Password of " + escaped(name) + ':') : std::nullopt;
  return typed ? *typed : passwordFrom(file);
}

int statusOf(PlayerEnd end, std::string_view why, std::string_view program) {
  if (end == PlayerEnd::Left || end == PlayerEnd::Drained) return kInOrder;
  std::string line(why);
  std::replace(line.begin(), line.end(), '\n', ' ');
  fmt::print(stderr, "{}: {}\n", program, escaped(line));
  return end == PlayerEnd::NoConnection ? kNoConnection : kNotAsExpected;
}

struct StopSignals::Signals {
  Signals(asio::io_context& context, std::function<void()> first, std::function<void()> second)
      : set(context, SIGINT, SIGTERM), calls{std::move(first), std::move(second)} {
    wait(0);
  }
  void wait(std::size_t call) {
    set.async_wait([this, call](const std::error_code& failure, int) {
      if (failure) return;
      calls[call]();
      wait(1);
    });
  }
  asio::signal_set set;
  std::function<void()> calls[2];
};

StopSignals::StopSignals(asio::io_context& context, std::function<void()> first, std::function<void()> second)
    : signals_(std::make_unique<Signals>(context, std::move(first), std::move(second))) {}

StopSignals::~StopSignals() = default;

}  // namespace poker::holdem
