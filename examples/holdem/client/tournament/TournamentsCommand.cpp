#include <CommandProcessor/types/FieldJson.h>
#include <examples/holdem/client/PlayerOptions.h>
#include <examples/holdem/client/lobby/Visit.h>
#include <examples/holdem/client/terminal/Text.h>
#include <examples/holdem/client/tournament/TourLobbyText.h>

#include <fmt/color.h>
#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <memory>
#include <optional>
#include <utility>

namespace poker::holdem {

namespace {

using TOUR_NAMES::TourStatus;
using TOUR_NAMES::TourType;

constexpr std::chrono::milliseconds kBetweenQuestions{250};

struct Options {
  VisitorSettings player;
  std::string passwordFile;
  std::uint32_t tournament = 0;  // 0: the list
  std::string tournamentPassword;
  std::string readyFile;
  bool enters = false;
  bool leaves = false;
  bool follows = false;
  bool json = false;
  Colour colour = Colour::Auto;
};

class TournamentsVisit final : public Visit {
 public:
  using Visit::send;

  explicit TournamentsVisit(const Options& options)
      : Visit(options.player, "holdem-client tournaments"),
        options_(options),
        colour_(wantsColour(options.colour, stdout)),
        picture_(options.tournament),
        next_(context()) {}

 private:
  void ask() override {
    next_.cancel();
    for (TourListPicture& list : lists_) list = TourListPicture(list.type());
    hasLists_[0] = hasLists_[1] = false;
    picture_ = TourPicture(options_.tournament);
    details_.reset();
    asksForWhole_ = asksForDetails_ = isShown_ = false;
    looksAt_ = 0;
    ledBy_.clear();
    if (options_.enters) {
      return send<ClTourRegister>(options_.tournament, TourMoneyChooser::empty(), options_.tournamentPassword);
    }
    if (options_.leaves) return send<ClTourUnregister>(options_.tournament);
    if (options_.follows) leaveWithReader();
    // A tournament that does not exist is not answered, but it is not on a list either.
    for (const TourListPicture& list : lists_) send<ClGetTournamentsInfo>(list.type(), 0u);
  }

  // Taking part

  void onTourRegistration(const SrvTourRegisterResult& result) override {
    finish(result, result.reason() == SrvTourRegisterResult::Reason::Registered, result.reasonStr());
  }
  void onTourUnregistration(const SrvTourUnregisterResult& result) override {
    finish(result, result.reason() == SrvTourUnregisterResult::Reason::Unregistered, result.reasonStr());
  }
  template <class Result>
  void finish(const Result& result, bool isDone, std::string text) {
    if (!options_.enters && !options_.leaves) return;
    text = inOneLine(std::move(text));
    if (text.empty()) text = fmt::format("The house answers with reason {}.", static_cast<unsigned>(result.reason()));
    if (options_.json) tellJson(result);
    if (!isDone) return fail(text);
    if (!options_.json) write("  " + text + '\n');
    beAnswered();
    leave();
  }

  // What is asked for

  void onTournaments(const SrvTournamentsInfo& command) override {
    const TournamentsInfo& info = command.getInfo();
    const auto list = std::find_if(std::begin(lists_), std::end(lists_),
                                   [&](const TourListPicture& each) { return each.type() == info.type; });
    if (list == std::end(lists_)) return;
    const std::optional<TourStatus> before = status();
    list->apply(command);
    hasLists_[list - lists_] = true;
    if (options_.tournament == 0) {
      if (options_.json) tellJson(command);
      if (hasLists_[0] && hasLists_[1]) show();
      return;
    }
    if (!hasLists_[0] || !hasLists_[1]) return;
    if (entry() == nullptr) {
      return fail(fmt::format("there is no tournament {}{}", options_.tournament, isShown_ ? " any more" : ""));
    }
    if (!isShown_) {
      if (std::exchange(asksForWhole_, true)) return;
      send<ClGetTourMoney>(options_.tournament);
      return send<ClGetMultiInitializeInfo>(options_.tournament);
    }
    if (status() != before) {
      if (options_.json) tellJson(command);
      // That play begins, the first level tells; that it is over, the places.
      const bool isTold = before == TourStatus::Prestarted || status() == TourStatus::Finished;
      if (!isTold) sayStage(statusText(*status()));
    }
    // What was asked before is answered by now, so that nothing piles up on a slow connection.
    picture_.askForChanges(*this);
    if (status() == TourStatus::Finished) askForDetails();
    follow();
  }
  void onTourMoney(const SrvTourMoney& command) override {
    if (command.tourId() != options_.tournament) return;
    if (options_.json) tellJson(command);
    cost_ = costText(command);
  }
  void onTourDetails(const SrvTourDetails& command) override {
    if (command.touranmentID() != options_.tournament || !std::exchange(asksForDetails_, false)) return;
    details_ = command.getInfo();
    if (options_.json) tellJson(command);
    if (!isShown_) return show();
    if (!details_->finished) {
      if (std::exchange(wantsLeaders_, false)) say(leadersText(*details_));
      return;
    }
    if (std::exchange(isOver_, true)) return;
    if (isCalledOff(picture_)) {
      sayStage("called off");
    } else {
      sayStage(statusText(TourStatus::Finished));
      showLines(placesText(*details_));
    }
    next_.cancel();
    leave();
  }
  void onTourPicture(const SrvMultiTourInitialize& command) override {
    if (options_.json) tellJson(command);
    picture_.apply(command);
  }
  /// Comes after the whole picture, and after all that has changed.
  void onTourSummary(const SrvMultiTourDetailedInfo& command) override {
    if (options_.json) tellJson(command);
    const std::optional<TourPicture::Summary> before = picture_.summary();
    picture_.apply(command);
    if (!isShown_) {
      // Both are large. The picture is confirmed by now.
      if (picture_.isWhole()) askForDetails();
      return;
    }
    if (!before || !picture_.summary()) return;
    const MultiTourneyInfo& now = picture_.summary()->numbers;
    std::vector<std::string> changes = changesText(before->numbers, now);
    if (std::exchange(isFundNew_, false) && !picture_.fund().summary.empty())
      changes.push_back("prize fund " + escaped(picture_.fund().summary));
    if (!changes.empty()) say(fmt::format("{}", fmt::join(changes, " · ")));
    if (now.tables == 1 && before->numbers.tables > 1) {
      sayStage("the final table");
      askForLeaders();
    }
  }
  void onTourProtected(const SrvTourProtectionError& refusal) override { fail(inOneLine(refusal.reasonStr())); }

  // What is new

  void onTourTables(const SrvUpdateTables& command) override {
    const TourPicture::Tables before = picture_.tables();
    change(command);
    if (picture_.tables().empty()) return;  // it is over
    for (const auto& [number, table] : before) {
      if (!picture_.tables().contains(number)) say(fmt::format("table {} is broken", number));
    }
  }
  void onTourPrizes(const SrvUpdatePrizeDescr& command) override { change(command); }
  void onTourPlayers(const SrvUpdatePlayers& command) override {
    const TourPicture::Players before = picture_.players();
    change(command);
    if (entry() == nullptr) return;
    const bool hasBegun = !picture_.tables().empty() || entry()->status >= TourStatus::Prestarted;
    for (const std::string& line : playersText(before, picture_.players(), hasBegun)) say(line);
  }
  void onTourText(const SrvUpdateText& command) override {
    const std::string news = picture_.text(MultiTourText::News);
    change(command);
    // While there are tables, they tell the levels themselves, and so does what becomes of them.
    if (!picture_.tables().empty() || picture_.text(MultiTourText::News) == news) return;
    sayForeign("news", picture_.text(MultiTourText::News));
  }
  void onTourFund(const SrvUpdatePrizeFund& command) override {
    const std::string fund = picture_.fund().summary;
    change(command);
    isFundNew_ = isFundNew_ || picture_.fund().summary != fund;
  }
  template <class Update>
  void change(const Update& command) {
    if (options_.json) tellJson(command);
    picture_.apply(command);
  }

  // What is heard at a table

  void onTourTableInfo(const SrvTourTableInfo& command) override {
    if (options_.json) tellJson(command);
    limit_ = command.getInfo().limitType;
  }
  void onLevelSwitch(const SrvLevelSwitch& level) override {
    if (options_.json) return tellJson(level);
    // Who comes to another table is told anew, of less time; and a table may hear of what is next before it has what is now.
    const std::int16_t number = level.getLevel();
    const bool begins = level.isSwitching();
    if (!begins && level_ != 0 && number != level_ + 1) return;
    if (std::exchange(begins ? level_ : nextLevel_, number) == number) return;
    if (begins) wait_.clear();  // it goes on, and may wait for the same again
    const std::string text = levelText(level, limit_);
    begins ? sayStage(text) : say(text);
    wantsTable_ = wantsTable_ || begins;
  }
  void onTourPlayersMoney(const SrvUpdatePlayersMoney& command) override {
    if (command.tourID() != options_.tournament || command.getRequestedTable() != looksAt_) return;
    if (options_.json) tellJson(command);
    const TableLeaders leaders = tableLeaders(command);
    if (leaders.first.empty()) return;  // some have the same, or nobody is there any more
    const bool isOther = std::exchange(ledBy_, leaders.first) != leaders.first;
    if (std::exchange(wantsTable_, false) || isOther) say(leaders.text);
  }
  void onTourStartInfo(const SrvTourStartInfo& info) override {
    if (options_.json) return tellJson(info);
    if (const std::string text = info.infoText(); text.empty() || std::exchange(wait_, text) == text) return;
    if (!info.isBreak()) return say(wait_);
    sayStage(fmt::format("break, {} s", info.getSeconds()));
    askForLeaders();
  }
  void onTourMove(const SrvTourMoveToTable& command) override {
    if (options_.json) tellJson(command);
    hearFrom(command.tableID());
  }
  void onAdminMessage(const SrvAdminMsg& message) override { onNotice(message.message()); }

  void show() {
    showLines(options_.tournament == 0 ? tourListText({&lists_[0], &lists_[1]})
                                       : tourText(*entry(), picture_, *details_, cost_));
    isShown_ = true;
    asksForWhole_ = false;
    if (!options_.readyFile.empty()) std::ofstream(options_.readyFile) << "ready\n";
    beAnswered();
    if (!options_.follows || details_->finished) return leave();
    follow();
  }
  /// Asks after a while what is new, first in the list.
  void follow() {
    look();
    next_.in(kBetweenQuestions, [this] {
      const TourListPicture& list = lists_[lists_[0].tournament(options_.tournament) != nullptr ? 0 : 1];
      send<ClGetTournamentsInfo>(list.type(), list.version());
    });
  }
  /// Looks at a table, to hear what only its viewers hear. From one that is broken the server takes its viewers along, also
  /// who comes when it is broken already and the picture does not know it yet.
  void look() {
    if (picture_.tables().contains(looksAt_)) return;
    const auto largest =
        std::max_element(picture_.tables().begin(), picture_.tables().end(),
                         [](const auto& a, const auto& b) { return a.second.players < b.second.players; });
    if (largest == picture_.tables().end() || largest->second.players == 0) return;
    send<ClConnectGame>(largest->first, "", "", nullptr, 0);
    hearFrom(largest->first);
  }
  /// Hears of the chips at the table that it looks at.
  void hearFrom(std::uint32_t table) {
    if (looksAt_ != 0) send<ClUnsubscribeClient>(options_.tournament);
    looksAt_ = table;
    ledBy_.clear();
    send<ClSubscribeForTable>(looksAt_, options_.tournament);
    if (limit_ == LimitType::None) send<ClGetTourTableInfo>(options_.tournament, looksAt_);
  }

  void askForLeaders() {
    wantsLeaders_ = true;
    askForDetails();
  }
  /// One answer at a time: it is large.
  void askForDetails() {
    if (!std::exchange(asksForDetails_, true)) send<ClGetTourDetails>(options_.tournament, 0u);
  }

  const TourListEntry* entry() const {
    for (const TourListPicture& list : lists_) {
      if (const TourListEntry* found = list.tournament(options_.tournament)) return found;
    }
    return nullptr;
  }
  std::optional<TourStatus> status() const {
    return entry() == nullptr ? std::nullopt : std::optional(entry()->status);
  }
  std::string bold(const std::string& text) const {
    return colour_ ? fmt::format(fmt::emphasis::bold, "{}", text) : text;
  }
  void showLines(std::vector<std::string> lines) {
    if (options_.json) return;
    lines[0] = bold(lines[0]);
    for (const std::string& line : lines) write(line + '\n');
  }
  /// A line of what has happened.
  void say(const std::string& line) {
    if (isShown_ && !options_.json) write("  " + line + '\n');
  }
  /// ... of what begins with it.
  void sayStage(const std::string& what) {
    if (isShown_ && !options_.json) write(bold(fmt::format("━━ {} ━━", what)) + '\n');
  }
  void sayForeign(std::string_view about, std::string_view text) {
    std::vector<std::string> lines;
    addForeign(lines, about, text);
    if (!isShown_ || options_.json) return;
    for (const std::string& line : lines) write(line + '\n');
  }
  template <class Command>
  void tellJson(const Command& command) {
    write(fieldsToJson(command) + '\n');
  }

  const Options& options_;
  bool colour_;
  TourListPicture lists_[2] = {TourListPicture(TourType::SingleTable), TourListPicture(TourType::MultiTable)};
  bool hasLists_[2] = {};
  TourPicture picture_;
  std::optional<TournamentDetailedInfo> details_;
  std::string cost_;
  bool asksForWhole_ = false;
  bool asksForDetails_ = false;
  bool isShown_ = false;
  bool isOver_ = false;
  bool isFundNew_ = false;
  bool wantsLeaders_ = false;
  std::uint32_t looksAt_ = 0;  // a table
  std::string ledBy_;          // who has the most there
  bool wantsTable_ = false;    // to say how it stands there, when it is told next
  LimitType limit_ = LimitType::None;
  std::int16_t level_ = 0;  // that has begun; 0: none was told
  std::int16_t nextLevel_ = 0;
  std::string wait_;  // what was told last that it waits for
  Later next_;
};

int run(Options& options) {
  options.player.password = passwordOf(options.player.name, options.passwordFile);
  return TournamentsVisit(options).run();
}

}  // namespace

Subcommand addTournaments(CLI::App& parent) {
  const auto options = std::make_shared<Options>();
  options->player.name = "Visitor";
  CLI::App& app =
      *parent.add_subcommand("tournaments", "Shows the house's tournaments, or one of them; registers there.");
  addVisitor(app, options->player, options->passwordFile);
  CLI::Option* number = app.add_option("--tournament", options->tournament, "the one of this number")
                            ->check(CLI::Range(1u, UINT32_MAX).description(""))
                            ->type_name("N");
  app.add_option("--tournament-password", options->tournamentPassword, "of a protected one, to enter")
      ->type_name("TEXT");
  CLI::Option* enter = app.add_flag("--enter", options->enters, "register for it")->needs(number);
  CLI::Option* leave =
      app.add_flag("--leave", options->leaves, "take the registration back")->needs(number)->excludes(enter);
  app.add_flag("--follow", options->follows, "go on and tell what happens there, until SIGINT or until it is over")
      ->needs(number)
      ->excludes(enter)
      ->excludes(leave);
  app.add_option("--ready-file", options->readyFile, "written when the answer is there")->type_name("FILE");
  app.add_flag("--json", options->json, "for programs: an object a line, with the fields of the commands");
  addColour(app, options->colour);
  return {&app, [options] { return run(*options); }};
}

}  // namespace poker::holdem
