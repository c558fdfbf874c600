#include <examples/holdem/client/PlayerOptions.h>
#include <examples/holdem/client/lobby/LobbyText.h>
#include <examples/holdem/client/lobby/Visit.h>
#include <examples/holdem/client/terminal/PromotionText.h>
#include <examples/holdem/client/terminal/Text.h>
#include <examples/holdem/shared/Protocol.h>

#include <fmt/chrono.h>
#include <fmt/color.h>
#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <memory>

#include <unistd.h>

namespace poker::holdem {

namespace {

constexpr std::chrono::milliseconds kRedrawPause{50};  // what comes together is shown together
constexpr std::size_t kMostNotices = 5;                // below the table

struct Options {
  VisitorSettings player;
  std::string passwordFile;
  std::uint32_t table = 0;  // 0: the list
  bool follows = false;
  bool json = false;
  Colour colour = Colour::Auto;
};

class LobbyVisit final : public Visit {
 public:
  explicit LobbyVisit(const Options& options)
      : Visit(options.player, "holdem-client lobby"),
        options_(options),
        colour_(wantsColour(options.colour, stdout)),
        redraws_(options.follows && !options.json && isatty(STDOUT_FILENO) != 0),
        draw_(context()) {}

 private:
  void ask() override {
    picture_ = {};
    hasList_ = hasCounters_ = hasNews_ = false;
    if (options_.follows) leaveWithReader();
    send<ClGetServerInfo>(kRingGames, kNoList, 0u);
    if (options_.table != 0) send<ClGetGameInfo>(options_.table, 0u, 0u);
  }
  void onTables(const SrvServerInfo& command) override {
    bool isTableClosed = false;
    for (const std::uint32_t gameID : command.getInfo().removedTables) {
      const ServerTableEntry* table = picture_.table(gameID);
      if (table == nullptr || !concerns(gameID)) continue;
      say(fmt::format("{} (number {}) is closed.", escaped(table->tableName), gameID));
      isTableClosed = options_.table != 0;
    }
    picture_.apply(command);
    hasList_ = true;
    if (isTableClosed && options_.follows) {
      if (options_.json) tell(fmt::format("table {} is closed", options_.table));
      beAnswered();
      return leave();
    }
    if (options_.table != 0 && picture_.table(options_.table) == nullptr) {
      return fail(fmt::format("there is no table {}{}", options_.table, shown_.empty() ? "" : " any more"));
    }
    change();
  }
  void onCounters(const SrvServerCountersInfo& command) override {
    picture_.apply(command);
    hasCounters_ = true;
    change();
  }
  void onNews(const SrvNews& command) override {
    if (!redraws_) {
      for (const auto& [number, text] : picture_.news()) {
        const char* now = command.news(number);
        if (now != nullptr && *now == '\0') say("No more news: " + escaped(text));
      }
    }
    picture_.apply(command);
    hasNews_ = true;
    change();
  }
  void onTableDetails(const SrvGameInfo& command) override {
    const TableInfoDetailed& now = command.getDetailedInfo();
    if (now.gameID != options_.table) return;
    if (!redraws_ && picture_.details()) {
      for (const std::string& line : departures(*picture_.details(), now)) say(line);
    }
    picture_.apply(command);
    change();
  }
  void onOneUser(const SrvOneUser& command) override {
    for (const auto& [gameID, table] : picture_.tables()) {
      if ((gameID & 0xFFFF) == command.gameID() && concerns(gameID)) {  // no more of it travels
        say(fmt::format("A player waits for company at {}.", escaped(table.tableName)));
      }
    }
  }
  void onPromotion(const SrvPromoNotify& notice) override {
    // How it stands now takes the place of how it stood before.
    std::erase_if(notices_, [](const Notice& each) { return each.isStanding; });
    say(promotionText(notice), true);
  }
  void onPromotionWon(const SrvUserWonPromotion& winner) override { say(winnerText(winner)); }
  void onAdminMessage(const SrvAdminMsg& message) override { onNotice(message.message()); }
  void onNotice(std::string_view text) override {
    if (!redraws_) return tell(text);
    say(escaped(text));
  }

  bool isComplete() const {
    if (options_.table != 0) return hasList_ && picture_.details();
    return hasList_ && hasCounters_ && hasNews_;
  }
  void change() {
    if (!isComplete()) return;
    beAnswered();
    if (options_.follows) return draw_.in(kRedrawPause, [this] { show(); });
    show();
    leave();
  }
  /// Whether what happens at that table is news here.
  bool concerns(std::uint32_t gameID) const { return options_.table == 0 || options_.table == gameID; }
  /// A word beside what is shown.
  void say(const std::string& line, bool isStanding = false) {
    if (!options_.follows || options_.json) return;
    if (!redraws_) return write("  " + line + '\n');
    const std::time_t now = std::time(nullptr);
    notices_.push_back({fmt::format("  {:%H:%M:%S}  {}\n", fmt::localtime(now), line), isStanding});
    if (notices_.size() > kMostNotices) notices_.erase(notices_.begin());
    if (isComplete()) show();  // at once: it may be the last word
  }
  void show();

  const Options& options_;
  bool colour_;
  bool redraws_;
  LobbyPicture picture_;
  bool hasList_ = false, hasCounters_ = false, hasNews_ = false;
  struct Notice {
    std::string line;
    bool isStanding;  // of a promotion, until the next one
  };

  std::vector<std::string> shown_;
  std::vector<Notice> notices_;  // the last ones
  Later draw_;
};

void LobbyVisit::show() {
  const bool isOneTable = options_.table != 0;
  if (options_.json) {
    shown_ = {isOneTable ? detailsJson(*picture_.details()) : lobbyJson(picture_)};
    return write(shown_[0] + '\n');
  }
  std::vector<std::string> lines = isOneTable ? detailsText(*picture_.details()) : lobbyText(picture_);
  std::string text = redraws_ ? "\x1B[H\x1B[2J" : "";
  for (std::size_t i = 0; i < lines.size(); ++i) {
    // Who follows without a terminal finds what has changed.
    if (!redraws_ && std::find(shown_.begin(), shown_.end(), lines[i]) != shown_.end()) continue;
    text += (colour_ && i == 0 ? fmt::format(fmt::emphasis::bold, "{}", lines[i]) : lines[i]) + '\n';
  }
  for (const Notice& notice : notices_) text += notice.line;
  write(text);
  shown_ = std::move(lines);
}

int run(Options& options) {
  options.player.password = passwordOf(options.player.name, options.passwordFile);
  return LobbyVisit(options).run();
}

}  // namespace

Subcommand addLobby(CLI::App& parent) {
  const auto options = std::make_shared<Options>();
  options->player.name = "Visitor";
  CLI::App& app = *parent.add_subcommand("lobby", "Shows the house's tables, or what goes on at one of them.");
  addVisitor(app, options->player, options->passwordFile);
  app.add_option("--table", options->table, "the details of the table of this number")
      ->check(CLI::Range(1u, UINT32_MAX).description(""))
      ->type_name("N");
  app.add_flag("--follow", options->follows, "go on and show what changes, until SIGINT or until the table is closed");
  app.add_flag("--json", options->json, "for programs: an object a line, with the fields of the commands");
  addColour(app, options->colour);
  return {&app, [options] { return run(*options); }};
}

}  // namespace poker::holdem
