#include <examples/holdem/client/PlayerOptions.h>
#include <examples/holdem/client/lobby/Visit.h>
#include <examples/holdem/client/terminal/Text.h>

#include <fmt/color.h>
#include <fmt/format.h>

#include <chrono>
#include <memory>
#include <vector>

#include <unistd.h>

namespace poker::holdem {

namespace {

constexpr std::size_t kMostNumbers = 10'000;  // that one answer of the server holds
constexpr std::chrono::seconds kBeforeProgress{1};

struct Options {
  VisitorSettings player;
  std::string passwordFile;
  ReplayRequestInfo wanted;
  std::uint32_t hand = 0;  // 0: those that are wanted
  Colour colour = Colour::Auto;
};

/// Asks for the numbers of the hands, then for one text after the other: together they may be more than one answer holds.
class HistoryVisit final : public Visit {
 public:
  explicit HistoryVisit(const Options& options)
      : Visit(options.player, "holdem-client history"),
        options_(options),
        colour_(wantsColour(options.colour, stdout)),
        showsProgress_(isatty(STDERR_FILENO) != 0 && isatty(STDOUT_FILENO) == 0) {
    if (options_.hand != 0) numbers_.push_back(options_.hand);
  }

 private:
  void ask() override {
    if (!numbers_.empty()) return askForText();
    ReplayRequestInfo wanted = options_.wanted;
    wanted.setListOnly(true);
    send<ClRplGetHandHistory>(wanted);
  }
  void askForText() {
    awaitAnswer();
    send<ClGetHandHistory>(false, numbers_[next_], false);
  }
  void onHandNumbers(const SrvRplHandHistoryList& command) override {
    if (command.getGames().empty()) return fail("no such hand was played by " + options_.player.name);
    numbers_.assign(command.getGames().begin(), command.getGames().end());
    const bool isBounded =
        options_.wanted.has(ReplayRequestInfo::kMostHands) && options_.wanted.mostHands() <= kMostNumbers;
    if (numbers_.size() >= kMostNumbers && !isBounded) {
      tell(fmt::format("the server names no more than the latest {} hands", numbers_.size()));
    }
    if (!options_.wanted.listOnly()) return askForText();
    std::string lines;
    for (const std::uint32_t number : numbers_) lines += fmt::format("{}\n", number);
    write(lines);
    beAnswered();
    leave();
  }
  void onHandTexts(const SrvRplHandHistory& command) override {
    if (command.getGames().empty() && options_.hand != 0) {
      return fail("no such hand was played by " + options_.player.name);
    }
    if (command.getGames().empty()) ++missing_;
    for (const std::string& hand : command.getGames()) show(hand);
    if (++next_ == numbers_.size()) {
      showProgress("");
      if (missing_ != 0) return fail("the server has no text of " + counted(missing_, "hand"));
      beAnswered();
      return leave();
    }
    if (Clock::now() - start_ > kBeforeProgress) showProgress(fmt::format("{} of {} hands", next_, numbers_.size()));
    askForText();
  }
  void show(const std::string& hand) {
    std::string text = escapedLines(hand);
    if (!text.ends_with('\n')) text += '\n';
    const std::size_t head = text.find('\n');
    const std::string title = text.substr(0, head);
    write(fmt::format("{}{}{}", next_ == 0 ? "" : "\n", colour_ ? fmt::format(fmt::emphasis::bold, "{}", title) : title,
                      text.substr(head)));
  }
  void showProgress(const std::string& text) const {
    if (showsProgress_) fmt::print(stderr, "\x1B[K{}\r", text);
  }

  using Clock = std::chrono::steady_clock;

  const Options& options_;
  bool colour_;
  bool showsProgress_;  // a terminal that shows the hands needs none
  std::vector<std::uint32_t> numbers_;
  std::size_t next_ = 0;  // of them
  std::size_t missing_ = 0;
  Clock::time_point start_ = Clock::now();
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
  addVisitor(app, options->player, options->passwordFile);
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
