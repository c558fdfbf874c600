#include <examples/holdem/client/bots/Character.h>
#include <examples/holdem/game/CardText.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace poker::holdem {
namespace {

// That bots do just what is open shows wherever they play: no turn of theirs times out in TableTest.cpp.

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

}  // namespace
}  // namespace poker::holdem
