#include <examples/holdem/client/PlayerOptions.h>
#include <examples/holdem/client/lobby/Visit.h>
#include <examples/holdem/client/terminal/Text.h>
#include <examples/holdem/client/terminal/TextTable.h>
#include <examples/holdem/game/CardText.h>
#include <examples/holdem/game/HandValue.h>

#include <fmt/color.h>
#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <span>
#include <stdexcept>
#include <utility>
#include <vector>

namespace poker::holdem {

namespace {

struct Options {
  VisitorSettings player;
  std::string passwordFile;
  bool finishedToo = false;
  Colour colour = Colour::Auto;
};

constexpr std::size_t kMostCardsShown = 7;

/// The cards as players lay them down, what there is most of first, and what they are worth.
std::string handText(const CardVector& hand) {
  std::vector<Card> cards(hand.begin(), hand.begin() + static_cast<long>(std::min(hand.size(), kMostCardsShown)));
  const auto rank = [](const Card& card) {
    return static_cast<unsigned>(card.rank() == Card::Rank::LowAce ? Card::Rank::Ace : card.rank());
  };
  const auto place = [&](const Card& card) {
    const auto count =
        std::count_if(hand.begin(), hand.end(), [&](const Card& other) { return rank(other) == rank(card); });
    return std::pair(count, rank(card));
  };
  std::stable_sort(cards.begin(), cards.end(), [&](const Card& a, const Card& b) { return place(a) > place(b); });
  std::string value;
  try {
    const HandValue best = HandValue::best(cards);
    const bool isStraight =
        best.category() == HandValue::Category::Straight || best.category() == HandValue::Category::StraightFlush;
    // The ace of the lowest straight comes last.
    if (isStraight && cards.size() == 5 && cards[1].rank() == Card::Rank::Five) {
      std::rotate(cards.begin(), cards.begin() + 1, cards.end());
    }
    value = ", " + best.toString();
  } catch (const std::invalid_argument&) {
    // Cards that nobody can have are worth nothing.
  }
  return fmt::format("[{}]{}", toText(std::span<const Card>(cards)), value);
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
    if (command.getPromotions().empty()) write("No high-hand promotion is under way.\n");
    for (const PromoHighHandInfo& promotion : command.getPromotions()) write(promotionText(promotion));
    awaitAnswer();
  }
  void onBonuses(const SrvPromoInfo& command) override {
    const PromoBucksInfo& info = command.promoInfo();
    std::string text = '\n' + bold("Your bonuses") + '\n';
    if (!info.text.empty()) text += fmt::format("  {}\n", escaped(info.text));
    TextTable table(
        {{"amount", TextTable::Align::Right}, {"for", TextTable::Align::Left}, {"", TextTable::Align::Left}});
    for (const PromoBonus& bonus : info.bonuses) {
      table.add({bonus.amount.toString(), escaped(bonus.promotion),
                 bonus.released ? "" : fmt::format("{} still to be earned", bonus.toEarn.toString())});
    }
    if (info.bonuses.empty()) {
      text += "  none\n";
    } else {
      for (const std::string& line : table.lines()) text += line + '\n';
    }
    write(text);
    beAnswered();
    leave();
  }
  /// The title tells the prize.
  std::string promotionText(const PromoHighHandInfo& promotion) const {
    const bool isOver = promotion.handsLeft == 0;
    std::string text = fmt::format("{}: {}\n", bold(escaped(promotion.title)),
                                   isOver ? "over" : counted(promotion.handsLeft, "hand") + " left");
    for (const PromoHighHand& hand : promotion.hands) {
      const bool isFirst = &hand == &promotion.hands[0];
      text += fmt::format("  {} {} {}, in hand {}\n", escaped(hand.userName),
                          !isFirst ? "has"
                          : isOver ? "won with"
                                   : "leads with",
                          handText(hand.cards), hand.dealID);
    }
    if (!promotion.hands.empty()) return text;
    if (isOver) return text + "  nobody won\n";
    return text + (promotion.cardsToBeat.empty() ? "  any hand leads\n"
                                                 : fmt::format("  to beat: {}\n", handText(promotion.cardsToBeat)));
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
  addVisitor(app, options->player, options->passwordFile);
  app.add_flag("--finished", options->finishedToo, "those that are over too");
  addColour(app, options->colour);
  return {&app, [options] { return run(*options); }};
}

}  // namespace poker::holdem
