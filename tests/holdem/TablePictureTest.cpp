#include <examples/holdem/client/TablePicture.h>
#include <examples/holdem/game/CardText.h>
#include <examples/holdem/shared/Protocol.h>
#include <tests/hostkit/HostKitUse.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <string_view>
#include <vector>

namespace poker::holdem {
namespace {

RealMoneyType chips(int units) { return RealMoneyType::fromUnits(units); }

ClientSeatState player(std::uint8_t seat, const char* name, int money) {
  ClientSeatState state;
  state.seatID = seat;
  state.displayName = name;
  state.money = chips(money);
  state.state = UserState::Waiting;
  return state;
}

/// Ann, Ben and Cleo on the seats 0, 2 and 5; the viewer is Ben.
ClientTableState threePlayers() {
  ClientTableState table;
  table.maxSeats = 9;
  table.ownSeat = 2;
  table.dealerSeat = 5;
  table.seats = {player(0, "Ann", 100), player(2, "Ben", 50), player(5, "Cleo", 200)};
  return table;
}

CardVector cards(std::string_view text, Card::Visibility visibility = Card::Visibility::Shown) {
  const std::vector<Card> faces = cardsFromText(text).value();
  CardVector cards(faces.begin(), faces.end());
  cards.setVisibility(visibility);
  return cards;
}

test::Bytes bytesOf(const ClientTableState& table) { return test::frame<SrvTableState>(table); }

class TablePictureTest : public testing::Test {
 protected:
  TablePictureTest() { apply<SrvTableState>(threePlayers()); }

  template <class T, class... Args>
  void apply(Args&&... args) {
    picture.apply(*make<T>(std::forward<Args>(args)...));
  }
  void act(std::uint8_t seat, UserAction action, int left, int bet) {
    apply<SrvUserActionNotify>(seat, action, chips(left), chips(bet), std::uint8_t{0});
  }
  void board(std::string_view text) {
    UserCardsInfoVector pack;
    pack.push_back(UserCardPack(SeatID(), cards(text)));
    apply<SrvPotCardDeal>(pack);
  }
  void beginHand() {
    apply<SrvUpdateHintText>(kHandNumberHint, "12");
    apply<SrvGameStart>(SeatIDSet{0, 2, 5});
    apply<SrvMoveDealChip>(SeatID(0));
    act(2, UserAction::SmallBlind, 49, 1);
    act(5, UserAction::BigBlind, 198, 2);
    UserCardsInfoVector hands;
    hands.push_back(UserCardPack(0, CardVector(2)));
    hands.push_back(UserCardPack(2, cards("As Ah", Card::Visibility::HiddenOwner)));
    hands.push_back(UserCardPack(5, CardVector(2)));
    apply<SrvCardDeal>(hands);
  }

  TablePicture picture;
};

TEST_F(TablePictureTest, KeepsEveryChipFromTheFirstBlindToTheShowDown) {
  const RealMoneyType all = chips(350);
  beginHand();
  NextTurnOptions options;
  options.addFoldOption();
  apply<SrvUserTurn>(SeatID(0), false, options, 20u);
  EXPECT_EQ(picture.state().turnSeat, SeatID(0));
  EXPECT_EQ(picture.state().turnTimeLeft, 20);
  act(0, UserAction::Raise, 40, 60);
  EXPECT_FALSE(picture.state().turnSeat.isValid());
  act(2, UserAction::Call, 0, 50);
  act(5, UserAction::Fold, 198, 2);
  EXPECT_EQ(picture.highestBet(), chips(60));
  act(0, UserAction::NoAction, 50, 50);  // what nobody called goes back
  EXPECT_EQ(picture.total(), all);
  EXPECT_EQ(picture.seat(0)->lastAction, UserAction::Raise);
  EXPECT_EQ(picture.seat(0)->state, UserState::Playing);
  EXPECT_EQ(picture.seat(2)->state, UserState::AllIn);
  EXPECT_EQ(picture.seat(5)->state, UserState::Folded);
  EXPECT_TRUE(picture.seat(5)->cards.empty());

  apply<SrvBetRoundComplete>(Pot(chips(99)), true, false, RealMoneyType(), chips(3));
  EXPECT_EQ(picture.total(), all - chips(3));
  EXPECT_EQ(picture.seat(0)->lastAction, UserAction::NoAction);
  board("2c 3c 4h");
  board("9s");
  EXPECT_EQ(picture.state().board.size(), 4u);
  apply<SrvShowPlayerCards>(SeatID(0), cards("Kc Qc"));
  EXPECT_EQ(picture.seat(0)->cards, cards("Kc Qc"));

  CommandHandle<SrvTUShowDown> end = make<SrvTUShowDown>(chips(3));
  end->addPlayerInfo(2, chips(50), chips(99));
  end->addPlayerInfo(0, chips(50), RealMoneyType());
  picture.apply(*end);
  EXPECT_EQ(picture.total(), all - chips(3));

  // What somebody finds who comes now is the same.
  ClientTableState after = threePlayers();
  after.dealerSeat = 0;
  after.seats[0].money = chips(50);
  after.seats[1].money = chips(99);
  after.seats[2].money = chips(198);
  EXPECT_EQ(bytesOf(picture.state()), bytesOf(after));
}

TEST_F(TablePictureTest, TakesTheCardsOfWhoFoldsAlsoTheOwnOnes) {
  beginHand();
  EXPECT_EQ(picture.ownSeat()->cards.size(), 2u);
  act(2, UserAction::Fold, 49, 1);
  EXPECT_TRUE(picture.ownSeat()->cards.empty());
  EXPECT_EQ(picture.ownSeat()->bet, chips(1));
}

TEST_F(TablePictureTest, KeepsSeatsInOrderAsPlayersComeAndGo) {
  apply<SrvUserStateOnTable>(SeatID(3), "Dan", chips(80), UserState::WaitBigBlind);
  apply<SrvUserStateOnTable>(SeatID(0), "Ann", RealMoneyType(), UserState::Empty);
  apply<SrvUserStateOnTable>(SeatID(8), "Eve", chips(40), UserState::Waiting);
  apply<SrvUserStateOnTable>(SeatID(5), "Cleo", chips(300), UserState::SittingOut);
  ClientTableState expected = threePlayers();
  expected.seats = {player(2, "Ben", 50), player(3, "Dan", 80), player(5, "Cleo", 300), player(8, "Eve", 40)};
  expected.seats[1].state = UserState::WaitBigBlind;
  expected.seats[2].state = UserState::SittingOut;
  EXPECT_EQ(bytesOf(picture.state()), bytesOf(expected));

  apply<SrvUserStateOnTable>(SeatID(2), "Ben", RealMoneyType(), UserState::Empty);
  EXPECT_EQ(picture.ownSeat(), nullptr);
  EXPECT_FALSE(picture.state().ownSeat.isValid());
  apply<SrvUserStateOnTable>(SeatID(7), "Ben", chips(60), UserState::Waiting);
  apply<SrvSitOk>(SeatID(7));
  EXPECT_EQ(picture.ownSeat()->displayName, "Ben");
}

TEST_F(TablePictureTest, PassesOverSeatsThatNobodyHas) {
  const auto before = bytesOf(picture.state());
  act(1, UserAction::Bet, 10, 10);
  apply<SrvShowPlayerCards>(SeatID(4), CardVector(2));
  apply<SrvUserStateOnTable>(SeatID(6), "", RealMoneyType(), UserState::Empty);
  apply<SrvUpdateHintText>(kHandNumberHint + 1, "77");
  EXPECT_EQ(bytesOf(picture.state()), before);
}

TEST_F(TablePictureTest, HasTheBlindsOfTheLevelThatBegan) {
  using enum TOUR_NAMES::SwitchType;
  ClientTableState table = threePlayers();
  table.limitType = LimitType::NoLimit;
  apply<SrvTableState>(table);
  apply<SrvLevelSwitch>(chips(30), chips(60), std::int16_t{3}, 60, ByTime, false);
  EXPECT_EQ(bytesOf(picture.state()), bytesOf(table)) << "it was only announced";
  apply<SrvLevelSwitch>(chips(30), chips(60), std::int16_t{3}, 600, ByTime, true);
  table.smallBlind = chips(30);
  table.bigBlind = table.lowBet = chips(60);
  EXPECT_EQ(bytesOf(picture.state()), bytesOf(table));

  table.limitType = LimitType::FixedLimit;
  apply<SrvTableState>(table);
  apply<SrvLevelSwitch>(chips(40), chips(80), std::int16_t{4}, 10, ByHands, true);
  table.smallBlind = chips(20);
  table.bigBlind = table.lowBet = chips(40);
  table.highBet = chips(80);
  EXPECT_EQ(bytesOf(picture.state()), bytesOf(table));
}

}  // namespace
}  // namespace poker::holdem
