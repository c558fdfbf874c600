#include <examples/holdem/client/PlayerOptions.h>
#include <examples/holdem/client/lobby/Visit.h>
#include <examples/holdem/client/terminal/Text.h>
#include <examples/holdem/client/terminal/TextTable.h>
#include <examples/holdem/game/CardText.h>

#include <fmt/color.h>
#include <fmt/format.h>

#include <memory>

namespace poker::holdem {

namespace {

struct Options {
  VisitorSettings player;
  std::string passwordFile;
  bool finishedToo = false;
  Colour colour = Colour::Auto;
};

constexpr std::size_t kMostCardsShown = 7;

std::string cardsText(const CardVector& cards) {
  std::string text = "[";
  for (std::size_t i = 0; i < std::min(cards.size(), kMostCardsShown); ++i) {
    text += fmt::format("{}{}", i == 0 ? "" : " ", toText(cards[i]));
  }
  return text + ']';
}

class PromotionsVisit final : public Visit {
 public:
  explicit PromotionsVisit(const Options& options)
      : Visit(options.player, "holdem-client promotions"),
        options_(options),
        colour_(wantsColour(options.colour, stdout)) {}

 private:
  void ask() override {
    send<ClGetHighHand>(options_.finishedToo);
    send<ClMiscGetPromoInfo>();
  }
  void onPromotions(const SrvHighHandInfo& command) override {
    if (command.getPromotions().empty()) fmt::print("No high-hand promotion is under way.\n");
    for (const PromoHighHandInfo& promotion : command.getPromotions()) show(promotion);
    awaitAnswer();
  }
  void onBonuses(const SrvPromoInfo& command) override {
    const PromoBucksInfo& info = command.promoInfo();
    fmt::print("\n{}\n", bold("Your bonuses"));
    if (!info.text.empty()) fmt::print("  {}\n", escaped(info.text));
    TextTable table(
        {{"amount", TextTable::Align::Right}, {"for", TextTable::Align::Left}, {"", TextTable::Align::Left}});
    for (const PromoBonus& bonus : info.bonuses) {
      table.add({bonus.amount.toString(), escaped(bonus.promotion),
                 bonus.released ? "" : fmt::format("{} still to be earned", bonus.toEarn.toString())});
    }
    if (info.bonuses.empty()) {
      fmt::print("  none\n");
    } else {
      for (const std::string& line : table.lines()) fmt::print("{}\n", line);
    }
    beAnswered();
    leave();
  }
  void show(const PromoHighHandInfo& promotion) const {
    fmt::print("{}: {}{}\n", bold(escaped(promotion.title)),
               promotion.handsLeft == 0 ? "over" : fmt::format("{} hands left", promotion.handsLeft),
               promotion.cardsToBeat.empty() ? "" : ", to beat " + cardsText(promotion.cardsToBeat));
    for (const PromoHighHand& hand : promotion.hands) {
      fmt::print("  {} {} in hand {}\n", escaped(hand.userName), cardsText(hand.cards), hand.dealID);
    }
    if (promotion.hands.empty()) fmt::print("  nobody has a hand that counts\n");
  }
  std::string bold(const std::string& text) const {
    return colour_ ? fmt::format(fmt::emphasis::bold, "{}", text) : text;
  }

  const Options& options_;
  bool colour_;
};

int run(Options& options) {
  options.player.password = passwordOf(options.player.name, options.passwordFile);
  return PromotionsVisit(options).run();
}

}  // namespace

Subcommand addPromotions(CLI::App& parent) {
  const auto options = std::make_shared<Options>();
  options->player.name = "Guest";
  CLI::App& app = *parent.add_subcommand("promotions", "Shows the high-hand promotions, and the player's own bonuses.");
  addHouse(app, options->player, options->passwordFile);
  app.add_flag("--finished", options->finishedToo, "those that are over too");
  addColour(app, options->colour);
  return {&app, [options] { return run(*options); }};
}

}  // namespace poker::holdem
