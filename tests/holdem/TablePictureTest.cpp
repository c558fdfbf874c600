#include <examples/holdem/client/TablePicture.h>
#include <examples/holdem/shared/Protocol.h>
#include <tests/hostkit/HostKitUse.h>

#include <gtest/gtest.h>

#include <cstdint>

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

// What goes on in a hand is compared with the server's own picture where bots play, in TableTest.cpp.

/// Ann, Ben and Cleo on the seats 0, 2 and 5; the viewer is Ben.
ClientTableState threePlayers() {
  ClientTableState table;
  table.maxSeats = 9;
  table.ownSeat = 2;
  table.dealerSeat = 5;
  table.seats = {player(0, "Ann", 100), player(2, "Ben", 50), player(5, "Cleo", 200)};
  return table;
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

  TablePicture picture;
};

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
