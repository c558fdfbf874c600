#include <examples/holdem/client/bots/Character.h>
#include <examples/holdem/game/CardText.h>
#include <examples/holdem/game/Deck.h>

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <stdexcept>
#include <vector>

namespace poker::holdem {
namespace {

constexpr Style kStyles[] = {Style::Tight, Style::Loose, Style::Random};

RealMoneyType chips(std::int64_t hundredths) { return RealMoneyType::fromHundredths(hundredths); }

// A turn that can come up at a table, with all that the situation refers to.
struct Table {
  std::vector<Card> own;
  std::vector<Card> board;
  NextTurnOptions options;
  Situation situation;

  const Situation& view() {
    situation.ownCards = own;
    situation.board = board;
    situation.options = &options;
    return situation;
  }
};

Table anyTurn(std::mt19937_64& random) {
  const auto below = [&random](std::int64_t n) {
    return static_cast<std::int64_t>(drawBelow(random, static_cast<std::uint64_t>(n)));
  };
  Table table;
  Deck deck;
  deck.shuffle(random);
  constexpr std::size_t kBoards[] = {0, 0, 3, 4, 5};
  const std::size_t board = kBoards[below(5)];
  for (int i = 0; i < 2; ++i) table.own.push_back(deck.deal());
  while (table.board.size() < board) table.board.push_back(deck.deal());

  Situation& situation = table.situation;
  const std::int64_t blind = 1 + below(2) * 199 + below(2) * 33;
  const std::int64_t stack = 1 + below(blind * 200);
  const std::int64_t price = below(2) * (1 + below(blind * 40));
  situation.bigBlind = chips(blind);
  situation.stack = chips(stack);
  situation.pot = chips(price + blind + below(blind * 30));
  situation.opponents = 1 + static_cast<unsigned>(below(9));
  situation.hand = random();
  situation.decision = static_cast<unsigned>(below(5));

  const std::int64_t least = price + std::max(price, blind);
  const bool limit = below(3) == 0;
  if (price == 0) {
    table.options.addCheckOption();
    if (below(2) == 0) table.options.addFoldOption();
  } else {
    table.options.addFoldOption();
    if (price < stack) table.options.addOption(UserAction::Call, chips(price));
  }
  if (price >= stack || below(4) != 0) table.options.addOption(UserAction::AllIn, chips(stack));
  if (least < stack && below(4) != 0) {
    const UserAction action = price > 0 || board == 0 ? UserAction::Raise : UserAction::Bet;
    table.options.addOption(action, chips(least), chips(limit ? least : stack));
  }
  return table;
}

TEST(Character, DoesOnlyWhatIsOpenAndTheSameWhenAskedAgain) {
  std::mt19937_64 random(1);
  for (const Style style : kStyles) {
    const Character player(style, 7);
    std::map<UserAction, int> done;
    int between = 0;
    for (int round = 0; round < 2500; ++round) {
      Table table = anyTurn(random);
      const Situation& situation = table.view();
      const Decision decision = player.decide(situation);
      const auto option = table.options.options().find(decision.action);
      ASSERT_NE(option, table.options.options().end()) << actionCodeToStringForChat(decision.action);
      const auto [least, most] = option->second;
      ASSERT_TRUE(least <= decision.amount && decision.amount <= most) << decision.amount.toString();
      ASSERT_FALSE(decision.action == UserAction::Fold && table.options.options().contains(UserAction::Check));
      if (least < decision.amount && decision.amount < most) {
        ++between;
        const std::int64_t unit = std::max<std::int64_t>(situation.bigBlind.hundredths() / 2, 1);
        ASSERT_EQ(decision.amount.hundredths() % unit, 0);
      }
      ASSERT_EQ(Character(style, 7).decide(situation), decision);
      ++done[decision.action];
    }
    EXPECT_EQ(done.size(), 6u) << toText(style) << " leaves some action out";
    EXPECT_GT(between, 50) << toText(style) << " knows no amounts but the ends of the range";
  }
}

TEST(Character, IsNotTheSameInAnotherHandOrWithAnotherSeed) {
  std::mt19937_64 random(2);
  int bySeed = 0, byHand = 0, byDecision = 0;
  for (int round = 0; round < 300; ++round) {
    Table table = anyTurn(random);
    const Decision decision = Character(Style::Random, 1).decide(table.view());
    bySeed += Character(Style::Random, 2).decide(table.view()) != decision;
    ++table.situation.decision;
    byDecision += Character(Style::Random, 1).decide(table.view()) != decision;
    --table.situation.decision;
    ++table.situation.hand;
    byHand += Character(Style::Random, 1).decide(table.view()) != decision;
  }
  for (const int different : {bySeed, byHand, byDecision}) EXPECT_GT(different, 50);
}

// The share of 500 hands, in percent, in which the player does not give up.
int percentPlayed(Style style, const char* own, const char* board, std::int64_t price, std::int64_t pot) {
  Table table;
  table.own = cardsFromText(own).value();
  table.board = cardsFromText(board).value();
  table.options.addFoldOption();
  table.options.addOption(UserAction::Call, chips(price));
  table.options.addOption(UserAction::Raise, chips(2 * price), chips(20000));
  table.options.addOption(UserAction::AllIn, chips(20000));
  table.situation.bigBlind = chips(200);
  table.situation.stack = chips(20000);
  table.situation.pot = chips(pot);
  int played = 0;
  for (table.situation.hand = 0; table.situation.hand < 500; ++table.situation.hand) {
    played += Character(style, 3).decide(table.view()).action != UserAction::Fold;
  }
  return played / 5;
}

TEST(Character, PlaysItsStyle) {
  EXPECT_EQ(percentPlayed(Style::Tight, "7c2d", "", 1600, 2300), 0);
  for (const std::int64_t price : {200, 1600, 19000}) {
    EXPECT_EQ(percentPlayed(Style::Tight, "AcAd", "", price, price + 300), 100);
  }
  EXPECT_LT(percentPlayed(Style::Tight, "Jh8d", "", 200, 300), 20);
  EXPECT_GT(percentPlayed(Style::Loose, "Jh8d", "", 200, 300), 80);
  EXPECT_EQ(percentPlayed(Style::Tight, "7c7d", "7h2s9c", 1000, 3000), 100) << "three sevens";
  EXPECT_EQ(percentPlayed(Style::Tight, "3c2d", "AhKsQsJs", 10000, 12000), 0) << "nothing";
  const char* const board = "KsTd8c4h";  // ace and queen: enough for a small bet, not for a large one
  EXPECT_GT(percentPlayed(Style::Tight, "AhQc", board, 1000, 4000), 95);
  EXPECT_LT(percentPlayed(Style::Tight, "AhQc", board, 9000, 9500), 50);
}

TEST(Character, IsAllInOrOutWithAFewBigBlindsOfATournament) {
  std::mt19937_64 random(3);
  for (const Style style : kStyles) {
    std::map<std::int64_t, int> pushes;  // by the stack in big blinds
    for (int round = 0; round < 6000; ++round) {
      Table table;
      Deck deck;
      deck.shuffle(random);
      for (int i = 0; i < 2; ++i) table.own.push_back(deck.deal());
      const std::int64_t blinds = 1 + round % 8;
      table.situation.isTournament = true;
      table.situation.bigBlind = chips(200);
      table.situation.stack = chips(200 * blinds - 50);
      table.situation.pot = chips(300);
      table.situation.hand = static_cast<std::uint64_t>(round);
      table.options.addFoldOption();
      if (blinds > 1) table.options.addOption(UserAction::Call, chips(200));
      if (blinds > 2) table.options.addOption(UserAction::Raise, chips(400), table.situation.stack);
      table.options.addOption(UserAction::AllIn, table.situation.stack);
      const UserAction action = Character(style, 5).decide(table.view()).action;
      ASSERT_TRUE(action == UserAction::AllIn || action == UserAction::Fold) << actionCodeToStringForChat(action);
      pushes[blinds] += action == UserAction::AllIn;
    }
    // Nobody waits for aces until the blinds have eaten everything, and nobody plays whatever comes either.
    EXPECT_GT(pushes[1], 750 / 4) << toText(style);
    EXPECT_GT(pushes[8], 750 / 25) << toText(style);
    EXPECT_LT(pushes[8], 750 / 2 + 50) << toText(style);
    if (style == Style::Random) continue;
    EXPECT_GT(pushes[1], pushes[8]) << toText(style);
  }
}

TEST(Character, TakesAnythingThatIsOpenWhenTheUsualIsNot) {
  Table table;
  table.own = cardsFromText("AsAd").value();
  for (const Style style : kStyles) {
    const Character player(style, 1);
    table.options.clear();
    EXPECT_EQ(player.decide(table.view()), Decision());
    table.view();
    table.situation.options = nullptr;
    EXPECT_EQ(player.decide(table.situation), Decision());
    table.options.addSitOutOption();
    EXPECT_EQ(player.decide(table.view()).action, UserAction::SittingOut);
    table.options.addOption(UserAction::Bet, chips(500), chips(100));  // a range that is none
    EXPECT_EQ(player.decide(table.view()), (Decision{UserAction::Bet, chips(500)}));
  }
  table.options.clear();
  table.options.addFoldOption();
  table.options.addOption(UserAction::AllIn, chips(1000));
  for (const auto& own : {std::vector<Card>(), {table.own[0]}, {Card(), Card()}}) {
    table.own = own;
    EXPECT_EQ(Character(Style::Loose, 1).decide(table.view()).action, UserAction::Fold) << "plays without cards";
  }
  table.own = table.board = cardsFromText("2c3d4h5s6c7d").value();
  table.own.resize(2);
  EXPECT_THROW(Character(Style::Loose, 1).decide(table.view()), std::invalid_argument) << "six cards on the board";
  table.board.resize(5);
  EXPECT_THROW(Character(Style::Loose, 1).decide(table.view()), std::invalid_argument) << "its own cards there";
}

TEST(Style, IsReadAsItIsWritten) {
  for (const Style style : kStyles) EXPECT_EQ(styleFromText(toText(style)), style);
  EXPECT_EQ(styleFromText("Tight"), std::nullopt);
}

}  // namespace
}  // namespace poker::holdem
