#include "Place.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace poker::holdem {
namespace {

using namespace std::chrono_literals;
using test::Place;
using testing::ElementsAre;
using testing::HasSubstr;

RealMoneyType chips(std::int64_t units) { return RealMoneyType::fromUnits(units); }

/// A client whose player does just what the test says.
class Person final : private PlayerEvents {
 public:
  std::vector<std::string> refusals;
  std::vector<std::string> chat;
  unsigned turns = 0;
  bool broke = false;
  std::optional<PlayerEnd> end;
  std::string why;
  RealMoneyType least, most, available;  // as SrvMoney told
  PlayerClient client;

  Person(Place& place, unsigned number, const std::function<void(PlayerSettings&)>& change = {})
      : client(place.context, settingsOf(place, number, change), *this) {
    client.start();
  }
  SeatID seat() const { return client.picture().state().ownSeat; }
  bool isSeated() const { return client.isAtTable() && client.picture().ownSeat() != nullptr; }
  bool isToAct() const { return isSeated() && client.picture().state().turnSeat == seat() && turns > answered_; }
  UserState state() const { return client.picture().ownSeat()->state; }
  RealMoneyType stack() const { return client.picture().ownSeat()->money; }
  void act(UserAction action, const RealMoneyType& amount = kZeroMoney) {
    answered_ = turns;
    client.act(action, amount);
  }
  void choose(UserAction action, bool on, const RealMoneyType& amount = kZeroMoney) {
    client.send<ClActionInAdvance>(actionBit(action), amount, on);
  }
  void script(unsigned button, unsigned players, const char* cards) {
    client.send<ClScriptSetDealer>(static_cast<SeatID::value_type>(button), players, std::string(cards));
  }

 private:
  static PlayerSettings settingsOf(Place& place, unsigned number, const std::function<void(PlayerSettings&)>& change) {
    PlayerSettings settings = place.bot(number).player;
    if (change) change(settings);
    return settings;
  }
  void onTurn(const NextTurnOptions&, std::chrono::seconds) override { ++turns; }
  void onRefused(std::string_view text) override { refusals.emplace_back(text); }
  void onChat(const SrvChatMsg& line) override { chat.push_back(line.getSender() + ": " + line.getMessage()); }
  void onOutOfMoney(const OutOfMoney&) override { broke = true; }
  void onMoney(const SrvMoney& told) override {
    least = told.minimum();
    most = told.maximum();
    available = told.available();
  }
  void onEnd(PlayerEnd how, std::string_view reason) override {
    end = how;
    why = reason;
  }

  unsigned answered_ = 0;
};

/// A table for scripted hands, where nothing happens that a test does not ask for.
ServerSettings calmTable(std::size_t players) {
  ServerSettings settings = test::quickServer(0, players);
  settings.house.tables[0].takesScripts = true;
  settings.house.tables[0].stakes.rake = {};
  settings.house.tables[0].handPause = 20ms;
  return settings;
}

TEST(Table, PlaysAScriptedHandAndSplitsThePotToTheHundredth) {
  ServerSettings settings = calmTable(3);
  settings.house.tables[0].stakes.smallBlind = RealMoneyType::fromHundredths(25);
  settings.house.tables[0].stakes.bigBlind = RealMoneyType::fromHundredths(49);
  Place place(settings);
  Person ann(place, 0), ben(place, 1);
  ASSERT_TRUE(place.runUntil([&] { return ann.isSeated() && ben.isSeated(); }));
  // Button Cy: Ann has the small blind, Ben the big one. The board plays for Ann and Ben, Cy folds after the call.
  ann.script(2, 3, "2c 3c 4c 2d 3d 4d As Ks Qs Js Ts");
  Person cy(place, 2);
  ASSERT_TRUE(place.runUntil([&] { return cy.isToAct(); }));
  EXPECT_EQ(cy.client.picture().state().dealerSeat, SeatID(2));
  cy.act(UserAction::Call);
  ASSERT_TRUE(place.runUntil([&] { return ann.isToAct(); }));
  // A box that is set in time is played without a question; so is the check that Ben chose.
  ben.choose(UserAction::Check, true);
  ben.client.chat("I check");
  ASSERT_TRUE(place.runUntil([&] { return !ann.chat.empty(); }));
  ann.choose(UserAction::Fold, true);
  ann.choose(UserAction::Fold, false);
  ann.act(UserAction::Call);
  ASSERT_TRUE(place.runUntil([&] { return ann.isToAct() && ann.client.picture().state().board.size() == 3; }));
  EXPECT_EQ(ben.turns, 0u);
  ann.act(UserAction::Bet, chips(10));
  ASSERT_TRUE(place.runUntil([&] { return ben.isToAct(); }));
  ben.act(UserAction::Call);
  ASSERT_TRUE(place.runUntil([&] { return cy.isToAct(); }));
  cy.client.send<ClMoreMoney>(chips(10));  // comes when the hand is over
  cy.act(UserAction::Fold);
  for (int street = 0; street < 2; ++street) {
    for (Person* person : {&ann, &ben}) {
      ASSERT_TRUE(place.runUntil([&] { return person->isToAct(); }));
      person->act(UserAction::Check);
    }
  }
  ASSERT_TRUE(place.runUntil([&] { return place.table().handsPlayed() == 1 && ann.stack() != chips(0); }));
  // 21.47 in the pot: the odd hundredth goes to Ann, who sits first after the button.
  const auto seated = place.bank().seated(1);
  EXPECT_EQ(seated[0].stack, RealMoneyType::fromHundredths(20025));
  EXPECT_EQ(seated[1].stack, RealMoneyType::fromHundredths(20024));
  EXPECT_EQ(seated[2].stack, RealMoneyType::fromHundredths(20951));
  ann.client.chat("hello");
  ASSERT_TRUE(place.runUntil([&] { return cy.chat.size() == 2; }));
  EXPECT_THAT(cy.chat, ElementsAre("Player 1: I check", "Player 0: hello"));
}

TEST(Table, TakesAnAnswerForTheTurnThatWasSeenAndNoOther) {
  Place place(calmTable(2));
  Person ann(place, 0), ben(place, 1);
  ASSERT_TRUE(place.runUntil([&] { return ann.isToAct() || ben.isToAct(); }));
  Person& first = ann.isToAct() ? ann : ben;
  Person& second = ann.isToAct() ? ben : ann;
  // Out of turn, and for an amount that is not open: passed over, and the turn stands.
  second.client.act(UserAction::Fold, kZeroMoney);
  first.client.act(UserAction::Raise, chips(100'000));
  second.client.chat("was here");
  ASSERT_TRUE(place.runUntil([&] { return !first.chat.empty(); }));
  EXPECT_TRUE(first.isToAct());
  first.act(UserAction::Call);
  ASSERT_TRUE(place.runUntil([&] { return second.isToAct(); }));
  // The same player is first on the flop. A second answer to the turn before, on its way already, must not count there.
  second.act(UserAction::Check);
  second.client.act(UserAction::Fold, kZeroMoney);
  ASSERT_TRUE(place.runUntil([&] { return second.isToAct(); }));
  second.act(UserAction::Check);
  ASSERT_TRUE(place.runUntil([&] { return first.isToAct(); }));
  EXPECT_EQ(second.state(), UserState::Playing);
}

TEST(Table, PlaysForWhoIsSilentAndTakesThePlayerBack) {
  ServerSettings settings = calmTable(2);
  settings.house.tables[0].replyTime = 150ms;
  settings.house.tables[0].keepSeat = 400ms;
  Place place(settings);
  Person ann(place, 0), ben(place, 1);
  ASSERT_TRUE(place.runUntil([&] { return ann.isSeated() && ann.state() == UserState::SittingOut; }));
  ann.client.send<ClBack>();
  ASSERT_TRUE(place.runUntil([&] { return ann.isSeated() && ann.state() != UserState::SittingOut; }));
  // Ben leaves in the middle of a hand: the blind is lost, the rest is back in the account.
  ben.client.send<ClBack>();
  ASSERT_TRUE(place.runUntil([&] { return ann.state() == UserState::Playing; }));
  ben.client.standUp();
  ASSERT_TRUE(place.runUntil([&] { return !ben.isSeated(); }));
  EXPECT_EQ(place.bank().seated(1).size(), 1u);
  // Who stays away too long loses the seat, not the chips.
  ASSERT_TRUE(place.runUntil([&] {
    ann.client.breakConnection();
    return place.bank().seated(1).empty();
  }));
  EXPECT_EQ(place.bank().audit().difference(), kZeroMoney);
  EXPECT_EQ(place.bank().audit().stacks, kZeroMoney);
}

TEST(Table, ASecondLogonTakesTheSeatAndTheFirstOnesEndDoesNotTouchIt) {
  Place place(calmTable(2));
  Person ann(place, 0), ben(place, 1);
  ASSERT_TRUE(place.runUntil([&] { return ann.isToAct() || ben.isToAct(); }));
  Person& asked = ann.isToAct() ? ann : ben;
  const unsigned number = ann.isToAct() ? 0 : 1;
  Person again(place, number);
  ASSERT_TRUE(place.runUntil([&] { return asked.end.has_value() && again.isToAct(); }));
  EXPECT_EQ(*asked.end, PlayerEnd::Refused);
  EXPECT_EQ(again.client.picture().ownSeat()->cards.front().visibility(), Card::Visibility::HiddenOwner);
  place.runUntil([] { return false; }, 100ms);
  EXPECT_EQ(again.state(), UserState::Playing);
  again.act(UserAction::Fold);
  ASSERT_TRUE(place.runUntil([&] { return place.table().handsPlayed() == 1; }));
}

TEST(Table, SaysWhyASeatOrChipsAreRefused) {
  ServerSettings settings = calmTable(9);
  settings.house.gift = chips(500);
  Place place(settings);
  Person ann(place, 0);
  ASSERT_TRUE(place.runUntil([&] { return ann.isSeated(); }));
  const auto refusal = [&](Person& person, auto&& request) {
    // The chat comes back after whatever answer there is.
    person.refusals.clear();
    person.chat.clear();
    request();
    person.client.chat("?");
    EXPECT_TRUE(place.runUntil([&] { return !person.chat.empty(); }));
    return person.refusals.empty() ? std::string("none") : person.refusals.front();
  };
  Person ben(place, 1, [](PlayerSettings& it) { it.sitsDown = false; });
  ASSERT_TRUE(place.runUntil([&] { return ben.client.isAtTable(); }));
  const auto sit = [&](unsigned seat, std::int64_t money) {
    return refusal(ben, [&] {
      ben.client.send<ClSitDown>(static_cast<SeatID::value_type>(seat), chips(money), TourMoneyChooser::empty());
    });
  };
  EXPECT_EQ(sit(0, 100), "Seat already taken");
  EXPECT_EQ(sit(9, 100), "Seat already taken");
  EXPECT_THAT(sit(1, 39), HasSubstr("You do not have enough money"));
  EXPECT_THAT(sit(1, 401), HasSubstr("your rebuy is not allowed"));
  EXPECT_THAT(sit(1, -5), HasSubstr("You do not have enough money"));
  EXPECT_EQ(sit(1, 300), "none");
  EXPECT_EQ(sit(2, 100), "You are not allowed to sit!");
  EXPECT_THAT(refusal(ben, [&] { ben.client.send<ClMoreMoney>(chips(101)); }), HasSubstr("your rebuy is not allowed"));
  EXPECT_EQ(refusal(ben, [&] { ben.client.send<ClMoreMoney>(chips(100)); }), "none");
  EXPECT_EQ(ben.stack(), chips(400));
  // Who leaves and comes back soon brings what was there.
  ben.client.standUp();
  ASSERT_TRUE(place.runUntil([&] { return !ben.isSeated(); }));
  EXPECT_THAT(sit(1, 300), HasSubstr("You must bring to the table at least the amount you had at\nyour last sitting."));
  EXPECT_EQ(sit(1, 400), "none");
  EXPECT_EQ(place.bank().audit().difference(), kZeroMoney);
}

TEST(House, LetsInWhoHasAPasswordAndStopsGuessing) {
  ServerSettings settings = calmTable(9);
  settings.house.tables[0].password = "door";
  Place place(settings);
  Person ann(place, 0, [](PlayerSettings& it) { it.tablePassword = "door"; });
  ASSERT_TRUE(place.runUntil([&] { return ann.isSeated(); }));
  Person wrongDoor(place, 1, [](PlayerSettings& it) { it.tablePassword = "window"; });
  Person wrongPassword(place, 0, [](PlayerSettings& it) { it.password = "guess"; });
  Person badName(place, 2, [](PlayerSettings& it) { it.name = "x"; });
  Person noTable(place, 3, [](PlayerSettings& it) { it.gameID = 77; });
  ASSERT_TRUE(place.runUntil([&] { return wrongDoor.end && wrongPassword.end && badName.end && noTable.end; }));
  EXPECT_EQ(wrongDoor.why, "Sorry, your authorization password for this table is wrong.");
  EXPECT_EQ(wrongPassword.why, "Bad user code or password !");
  EXPECT_THAT(badName.why, HasSubstr("A name has 2 to 20 letters"));
  EXPECT_EQ(*noTable.end, PlayerEnd::Refused);
  EXPECT_TRUE(ann.isSeated());  // the thief did not push her out
}

}  // namespace
}  // namespace poker::holdem
