#include <examples/holdem/client/PlayerOptions.h>
#include <examples/holdem/client/lobby/Visit.h>
#include <examples/holdem/client/terminal/Text.h>

#include <fmt/color.h>
#include <fmt/format.h>

#include <memory>

namespace poker::holdem {

namespace {

struct Options {
  VisitorSettings player;
  std::string passwordFile;
  ReplayRequestInfo wanted;
  std::uint32_t hand = 0;  // 0: those that are wanted
  Colour colour = Colour::Auto;
};

class HistoryVisit final : public Visit {
 public:
  explicit HistoryVisit(const Options& options)
      : Visit(options.player, "holdem-client history"),
        options_(options),
        colour_(wantsColour(options.colour, stdout)) {}

 private:
  void ask() override {
    if (options_.hand != 0) {
      send<ClGetHandHistory>(false, options_.hand, false);
    } else {
      send<ClRplGetHandHistory>(options_.wanted);
    }
  }
  void onHandTexts(const SrvRplHandHistory& command) override {
    if (command.getGames().empty()) return fail("no such hand was played by " + options_.player.name);
    bool isFirst = true;
    for (const std::string& hand : command.getGames()) {
      if (!std::exchange(isFirst, false)) fmt::print("\n");
      std::string text = escapedLines(hand);
      if (!text.ends_with('\n')) text += '\n';
      const std::size_t head = text.find('\n');
      const std::string title = text.substr(0, head);
      fmt::print("{}{}", colour_ ? fmt::format(fmt::emphasis::bold, "{}", title) : title, text.substr(head));
    }
    beAnswered();
    leave();
  }
  void onHandNumbers(const SrvRplHandHistoryList& command) override {
    if (command.getGames().empty()) return fail("no such hand was played by " + options_.player.name);
    for (const std::uint32_t number : command.getGames()) fmt::print("{}\n", number);
    beAnswered();
    leave();
  }

  const Options& options_;
  bool colour_;
};

int run(Options& options) {
  options.player.password = passwordOf(options.player.name, options.passwordFile);
  return HistoryVisit(options).run();
}

}  // namespace

Subcommand addHistory(CLI::App& parent) {
  const auto options = std::make_shared<Options>();
  options->player.name = "Guest";
  CLI::App& app = *parent.add_subcommand(
      "history", "Tells the hands that the player has played, newest last: those that meet every criterion.");
  addHouse(app, options->player, options->passwordFile);
  ReplayRequestInfo& wanted = options->wanted;
  const auto number = [&app](const char* name, std::function<void(const std::uint32_t&)> take, const char* help) {
    return app.add_option_function<std::uint32_t>(name, std::move(take), help)
        ->check(CLI::Range(1u, UINT32_MAX).description(""))
        ->type_name("N");
  };
  CLI::Option* hand = number(
      "--hand", [options](std::uint32_t n) { options->hand = n; }, "the hand of this number");
  CLI::Option* criteria[] = {
      app.add_flag_callback(
          "--list", [&wanted] { wanted.setListOnly(true); }, "their numbers alone, one a line"),
      number(
          "--table", [&wanted](std::uint32_t n) { wanted.setGameID(n); }, "those of the table of this number"),
      number(
          "--last", [&wanted](std::uint32_t n) { wanted.setMostHands(n); }, "no more than so many, the latest"),
      app.add_option_function<std::string>(
             "--opponent", [&wanted](const std::string& name) { wanted.setOpponent(name); },
             "those in which this player took part")
          ->type_name("NAME")};
  for (CLI::Option* criterion : criteria) criterion->excludes(hand);
  addColour(app, options->colour);
  return {&app, [options] { return run(*options); }};
}

}  // namespace poker::holdem
