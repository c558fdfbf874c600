#include <examples/holdem/client/PlayerOptions.h>
#include <examples/holdem/client/lobby/Visit.h>
#include <examples/holdem/client/terminal/Text.h>

#include <fmt/color.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace poker::holdem {

namespace {

/// The texts that a player changes, as they are called on the command line.
struct Text {
  std::string_view key;
  std::string MemberProfileInfo::*value;
  std::size_t mostBytes = 50;
};
constexpr std::array kTexts = {
    Text{"real-name", &MemberProfileInfo::realName},    Text{"city", &MemberProfileInfo::city},
    Text{"country", &MemberProfileInfo::country},       Text{"occupation", &MemberProfileInfo::occupation},
    Text{"hobbies", &MemberProfileInfo::hobbies},       Text{"favourite-game", &MemberProfileInfo::favouriteGame},
    Text{"about-me", &MemberProfileInfo::aboutMe, 2000}};
constexpr std::string_view kBirthDate = "birth-date";
constexpr std::size_t kLargestPicture = 20 * 1024;  // bytes

/// Nothing for a text that is not YYYY-MM-DD, or no day.
std::optional<COleDateTime> dayFromText(const std::string& text) {
  int year = 0, month = 0, day = 0, end = 0;
  if (std::sscanf(text.c_str(), "%4d-%2d-%2d%n", &year, &month, &day, &end) != 3) return std::nullopt;
  const COleDateTime date(year, month, day, 0, 0, 0);
  const bool isDay = static_cast<std::size_t>(end) == text.size() && date.GetStatus() == COleDateTime::valid;
  return isDay ? std::optional(date) : std::nullopt;
}

using Change = std::function<void(MemberProfileInfo&)>;

/// @throws CLI::ValidationError
Change changeFromText(const std::string& text) {
  const std::size_t equals = text.find('=');
  const std::string key = text.substr(0, equals);
  if (equals == std::string::npos) throw CLI::ValidationError("--set", "not KEY=VALUE: " + text);
  const std::string value = text.substr(equals + 1);
  if (key == kBirthDate) {
    const std::optional<COleDateTime> day = value.empty() ? COleDateTime() : dayFromText(value);
    if (!day) throw CLI::ValidationError("--set", "not YYYY-MM-DD: " + value);
    if (!value.empty() && !(*day >= COleDateTime(1900, 1, 1, 0, 0, 0) && *day <= COleDateTime::GetCurrentTime())) {
      throw CLI::ValidationError("--set", "nobody who plays was born on " + value + ": a day from 1900 to today");
    }
    return [day](MemberProfileInfo& profile) { profile.birthDate = *day; };
  }
  const auto known = std::find_if(kTexts.begin(), kTexts.end(), [&](const Text& each) { return each.key == key; });
  if (known == kTexts.end()) throw CLI::ValidationError("--set", "a profile has no " + key);
  if (value.size() > known->mostBytes) {
    throw CLI::ValidationError("--set",
                               fmt::format("{} takes {} bytes at most, not {}", key, known->mostBytes, value.size()));
  }
  return [member = known->value, value](MemberProfileInfo& profile) { profile.*member = value; };
}

struct Options {
  VisitorSettings player;
  std::string passwordFile;
  std::string of;  // empty: the player's own
  std::vector<Change> changes;
  std::string pictureFile;
  bool removesPicture = false;
  std::string saveTo;
  Colour colour = Colour::Auto;
};

class ProfileVisit final : public Visit {
 public:
  /// @param picture  what becomes the player's picture; nothing: it stays as it is
  ProfileVisit(const Options& options, std::optional<std::string> picture)
      : Visit(options.player, "holdem-client profile"),
        options_(options),
        colour_(wantsColour(options.colour, stdout)),
        changesTexts_(!options.changes.empty()),
        picture_(std::move(picture)),
        wantsPicture_(!options.saveTo.empty()) {}

 private:
  const std::string& name() const { return options_.of.empty() ? options_.player.name : options_.of; }

  void ask() override {
    if (std::exchange(isStoring_, false)) changesTexts_ = true;  // the connection was lost before the answer
    send<ClGetPlayerProfile>(name().c_str());
  }
  void onProfile(const SrvPlayerProfile& command) override {
    if (!command.valid()) return fail("there is no player " + name());
    profile_ = command.info();
    next();
  }
  void onPicture(const SrvSendUserPic& command) override {
    if (command.getPicSize() == 0) return refuse(name() + " has no picture");
    std::ofstream file(options_.saveTo, std::ios::binary);
    file.write(command.getPicBuffer(), command.getPicSize());
    file.close();
    if (!file) return refuse("cannot write " + options_.saveTo);
    next();
  }
  void onAdminMessage(const SrvAdminMsg& message) override { refuse(message.message()); }
  /// Fails, but what was changed before is changed.
  void refuse(const std::string& why) {
    const bool areTextsStored = !options_.changes.empty() && !changesTexts_ && !isStoring_;
    fail(why + (areTextsStored ? " (the texts of --set are stored)" : ""));
  }
  /// Each answer leads to the next question.
  void next() {
    awaitAnswer();
    isStoring_ = false;
    if (std::exchange(changesTexts_, false)) {
      isStoring_ = true;
      for (const Change& change : options_.changes) change(profile_);
      send<ClUpdatePlayerProfile>(profile_);
    } else if (picture_) {
      send<ClUpdateUserPic>(picture_->data(), static_cast<unsigned short>(picture_->size()));
      picture_.reset();
    } else if (std::exchange(wantsPicture_, false)) {
      send<ClGetNewPicture>(name().c_str());
    } else {
      show();
      beAnswered();
      leave();
    }
  }
  void show() {
    const std::string name = escaped(profile_.screenName);
    std::string text = (colour_ ? fmt::format(fmt::emphasis::bold, "{}", name) : name) + '\n';
    const auto line = [&text](std::string_view key, const std::string& value) {
      if (!value.empty()) text += fmt::format("  {:<16}{}\n", key, value);
    };
    const auto time = [](const COleDateTime& when) {
      return when == COleDateTime() ? std::string() : when.toIsoString();
    };
    line("number", std::to_string(profile_.memberID));
    for (const auto& [key, value, mostBytes] : kTexts) line(key, escaped(profile_.*value));
    line(kBirthDate, time(profile_.birthDate).substr(0, 10));
    line("member since", time(profile_.memberSince));
    line("last visit", time(profile_.lastVisit));
    line("picture", escaped(profile_.pictureCode));
    write(text);
  }

  const Options& options_;
  bool colour_;
  bool changesTexts_;
  bool isStoring_ = false;  // the texts are on their way
  std::optional<std::string> picture_;
  bool wantsPicture_;
  MemberProfileInfo profile_;
};

int run(Options& options) {
  std::optional<std::string> picture;
  if (options.removesPicture) picture.emplace();
  if (!options.pictureFile.empty()) {
    std::ifstream file(options.pictureFile, std::ios::binary);
    picture.emplace(kLargestPicture + 1, '\0');
    file.read(picture->data(), std::ssize(*picture));
    picture->resize(static_cast<std::size_t>(file.gcount()));
    if (file.bad() || picture->empty()) throw std::runtime_error("no picture in " + options.pictureFile);
    if (picture->size() > kLargestPicture) {
      throw std::runtime_error(fmt::format("{} is too large for a picture, which has {} KB at most",
                                           options.pictureFile, kLargestPicture / 1024));
    }
  }
  options.player.password = passwordOf(options.player.name, options.passwordFile);
  return ProfileVisit(options, std::move(picture)).run();
}

}  // namespace

Subcommand addProfile(CLI::App& parent) {
  const auto options = std::make_shared<Options>();
  options->player.name = "Guest";
  CLI::App& app = *parent.add_subcommand("profile", "Shows what a player tells of itself, or changes one's own.");
  addVisitor(app, options->player, options->passwordFile);
  CLI::Option* of = app.add_option("--of", options->of, "whose profile; otherwise one's own")->type_name("NAME");
  std::string keys;
  for (const Text& text : kTexts) keys += fmt::format("{}, ", text.key);
  app.add_option_function<std::vector<std::string>>(
         "--set",
         [options](const std::vector<std::string>& texts) {
           for (const std::string& text : texts) options->changes.push_back(changeFromText(text));
         },
         fmt::format("change one's own, any number of times: {}{}; nothing after = takes it back", keys, kBirthDate))
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
      ->allow_extra_args(false)
      ->excludes(of)
      ->type_name("KEY=VALUE");
  CLI::Option* picture =
      app.add_option("--picture", options->pictureFile, "becomes one's own: PNG, JPEG or GIF, 20 KB at most")
          ->check(CLI::ExistingFile.description(""))
          ->excludes(of)
          ->type_name("FILE");
  app.add_flag("--no-picture", options->removesPicture, "have none any more")->excludes(of)->excludes(picture);
  app.add_option("--save-picture", options->saveTo, "the player's picture goes there")->type_name("FILE");
  addColour(app, options->colour);
  return {&app, [options] { return run(*options); }};
}

}  // namespace poker::holdem
