#include "Guest.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace poker::holdem {
namespace {

using namespace std::chrono_literals;
using test::Guest;
using test::Place;
using test::quietTables;

RealMoneyType chips(std::int64_t units) { return RealMoneyType::fromUnits(units); }

/// Any number of guests, logged on in this order.
struct Company {
  std::vector<std::unique_ptr<Guest>> guests;

  Company(Place& place, std::initializer_list<const char*> names) {
    for (const char* name : names) {
      guests.push_back(std::make_unique<Guest>(place, name));
      EXPECT_TRUE(guests.back()->comesIn());
    }
  }
  Guest& operator[](std::size_t i) { return *guests[i]; }
};

void seat(Guest& guest, unsigned gameID, unsigned seat) {
  guest.enter(gameID);
  guest.sitDown(seat, 100);
  EXPECT_NE(guest.hears<SrvSitOk>(), nullptr);
}
void waitFor(Guest& guest, unsigned gameID) {
  guest.send<ClAddToWaitList>(gameID);
  EXPECT_TRUE(guest.isAnswered());
  EXPECT_EQ(guest.count<SrvAddToWaitListOk>(), 1u);
}
void describe(Guest& guest, std::int64_t lowBet, std::int64_t highBet, int minPlayers, int maxPlayers) {
  guest.send<ClAddGlobalWaitList>(std::uint16_t{0}, chips(lowBet), chips(highBet), minPlayers, maxPlayers, false);
  EXPECT_TRUE(guest.isAnswered());
}
std::string invitationOf(Guest& guest) {
  const SrvWaitList* invitation = guest.hears<SrvWaitList>();
  EXPECT_NE(invitation, nullptr) << guest.name();
  return invitation != nullptr ? invitation->reserveID() : "";
}

TEST(WaitLists, InviteWhoeverHasWaitedLongestWhateverTheyWaitFor) {
  Place place(quietTables({2, 2}));
  Company guests(place, {"Ann", "Ben", "Cy", "Dee", "Eve", "Flo"});
  Guest &ann = guests[0], &ben = guests[1], &cy = guests[2], &dee = guests[3], &eve = guests[4], &flo = guests[5];
  seat(ann, 1, 0);
  seat(ben, 1, 1);
  Company others(place, {"Gus", "Hal"});
  seat(others[0], 2, 0);
  seat(others[1], 2, 1);
  waitFor(cy, 2);  // before Dee, but not for this table
  describe(dee, 2, 2, 1, 0);
  waitFor(eve, 1);
  waitFor(flo, 1);
  // A seat becomes free: it is Dee's, whom any table suits, and looks taken to everybody else.
  flo.enter(1);
  ASSERT_TRUE(flo.isAnswered());
  ann.send<ClLeaveSeat>();
  const std::string deesID = invitationOf(dee);
  EXPECT_EQ(deesID.size(), 32u);
  EXPECT_EQ(dee.heard<SrvWaitList>()->gameID(), 1u);
  ASSERT_TRUE(flo.isAnswered());
  EXPECT_EQ(flo.heard<SrvUserStateOnTable>()->state(), UserState::Reserved);
  EXPECT_EQ(flo.heard<SrvUserStateOnTable>()->getDisplayName(), "Dee");
  flo.sitDown(0, 100);
  ASSERT_NE(flo.hears<SrvSitError>(), nullptr);
  EXPECT_EQ(flo.heard<SrvSitError>()->errorCode(), SrvErrorCode::SeatTaken);
  // Who comes to look finds it reserved too.
  cy.enter(1);
  ASSERT_NE(cy.hears<SrvTableState>(), nullptr);
  EXPECT_EQ(cy.heard<SrvTableState>()->getState().seats[0].state, UserState::Reserved);

  // Another's id, a wrong id, the wrong table: nothing happens to the invitation.
  eve.send<ClAcceptInvite>(1u, deesID, chips(100));
  dee.send<ClAcceptInvite>(1u, deesID + "0", chips(100));
  dee.send<ClRejectInvite>(2u, deesID);
  ASSERT_TRUE(eve.isAnswered() && dee.isAnswered());
  EXPECT_EQ(eve.count<SrvRemoveFromWaitListError>(), 1u);
  EXPECT_EQ(dee.count<SrvRemoveFromWaitListError>(), 2u);
  dee.send<ClRejectInvite>(1u, deesID);
  const std::string evesID = invitationOf(eve);
  EXPECT_EQ(dee.count<SrvRemoveFromWaitListOk>(), 1u);
  EXPECT_NE(evesID, deesID);

  // Money that is too little leaves everything as it is; then Eve sits, and waits for nothing more.
  eve.forget();
  eve.send<ClAcceptInvite>(1u, evesID, chips(1));
  ASSERT_NE(eve.hears<SrvSitError>(), nullptr);
  EXPECT_EQ(eve.heard<SrvSitError>()->errorCode(), SrvErrorCode::NotEnoughMoney);
  EXPECT_EQ(eve.count<SrvTableState>(), 1u);
  eve.send<ClAcceptInvite>(1u, evesID, chips(80));
  ASSERT_NE(eve.hears<SrvSitOk>(), nullptr);
  eve.send<ClRejectInvite>(1u, evesID);
  ASSERT_TRUE(eve.isAnswered());
  EXPECT_EQ(eve.count<SrvRemoveFromWaitListError>(), 1u);
  ASSERT_EQ(place.bank().seated(1).size(), 2u);
  EXPECT_EQ(place.bank().seated(1)[0].name, "Eve");
  EXPECT_EQ(place.bank().seated(1)[0].stack, chips(80));
  EXPECT_EQ(flo.count<SrvWaitList>() + cy.count<SrvWaitList>(), 0u);
  EXPECT_EQ(place.bank().audit().difference(), kZeroMoney);
}

TEST(WaitLists, PassOnASeatWhenNoAnswerComesOrTheConnectionEnds) {
  ServerSettings settings = quietTables({2, 2});
  settings.house.inviteTime = 200ms;
  Place place(settings);
  Company guests(place, {"Ann", "Ben", "Cy", "Dee", "Eve", "Flo"});
  Guest &ann = guests[0], &cy = guests[2], &dee = guests[3], &eve = guests[4], &flo = guests[5];
  seat(ann, 1, 0);
  seat(guests[1], 1, 1);
  for (std::size_t i = 2; i < 6; ++i) waitFor(guests[i], 1);
  const auto before = Clock::now();
  ann.send<ClLeaveSeat>();
  const std::string old = invitationOf(cy);
  // No answer in time: the id is worth nothing any more, and Dee is next, who breaks off. Eve is gone before that.
  eve.close();
  ASSERT_NE(dee.hears<SrvWaitList>(), nullptr);
  EXPECT_GE(Clock::now() - before, settings.house.inviteTime);
  EXPECT_EQ(cy.count<SrvRemoveFromWaitListOk>(), 1u);
  cy.send<ClAcceptInvite>(1u, old, chips(100));
  ASSERT_TRUE(cy.isAnswered());
  EXPECT_EQ(cy.count<SrvRemoveFromWaitListError>(), 1u);
  dee.close();
  ASSERT_NE(flo.hears<SrvWaitList>(), nullptr);
  // Another connection of the player takes over: the invitation was the first one's.
  Guest again(place, "Flo");
  ASSERT_TRUE(again.comesIn());
  ASSERT_TRUE(again.waitFor([&] { return flo.isClosed; }));
  again.enter(1);
  ASSERT_NE(again.hears<SrvTableState>(), nullptr);
  EXPECT_EQ(again.heard<SrvTableState>()->getState().seats.size(), 1u);
  EXPECT_EQ(place.server.house().waitLists().length(1), 0u);
  again.send<ClAcceptInvite>(1u, flo.heard<SrvWaitList>()->reserveID(), chips(100));
  ASSERT_TRUE(again.isAnswered());
  EXPECT_EQ(again.count<SrvRemoveFromWaitListError>(), 1u);
  EXPECT_EQ(place.table().freeSeat(), SeatID(0));
}

TEST(WaitLists, RefuseWhoCannotWaitAndEndWithTheTable) {
  ServerSettings settings = quietTables({2, 2, 2, 2, 2, 2, 2, 2});
  settings.house.tables[7].password = "door";
  settings.house.tables[6].stakes.smallBlind = settings.house.tables[6].stakes.bigBlind = chips(4);
  Place place(settings);
  Company guests(place, {"Ann", "Ben", "Cy"});
  // All tables that are open are full: those who sit there are logged on and away.
  for (unsigned table = 1; table <= 6; ++table) {
    for (unsigned i = 0; i < 2; ++i) {
      Guest guest(place, "Sitter " + std::to_string(table * 10 + i));
      ASSERT_TRUE(guest.comesIn());
      seat(guest, table, i);
    }
  }
  Guest& ann = guests[0];
  const auto answers = [&](Guest& guest, auto&& request) {
    guest.forget();
    request();
    EXPECT_TRUE(guest.isAnswered());
    EXPECT_EQ(guest.count<SrvAddToWaitListOk>() + guest.count<SrvAddToWaitListError>(), 1u);
    return guest.count<SrvAddToWaitListOk>() == 1;
  };
  const auto mayWait = [&](Guest& guest, unsigned gameID) {
    return answers(guest, [&] { guest.send<ClAddToWaitList>(gameID); });
  };
  const auto mayDescribe = [&](Guest& guest, std::uint16_t game, std::int64_t low, std::int64_t high, int min, int max,
                               bool realMoney) {
    return answers(guest, [&] { guest.send<ClAddGlobalWaitList>(game, chips(low), chips(high), min, max, realMoney); });
  };
  EXPECT_FALSE(mayWait(ann, 0));
  EXPECT_FALSE(mayWait(ann, 9));
  EXPECT_FALSE(mayWait(ann, 8));  // private
  for (unsigned table = 1; table <= WaitLists::kMostTables; ++table) EXPECT_TRUE(mayWait(ann, table));
  EXPECT_FALSE(mayWait(ann, 6));  // waits for enough already
  EXPECT_FALSE(mayWait(ann, 1));
  ann.send<ClRemoveFromWaitList>(1u);
  ann.send<ClRemoveFromWaitList>(1u);
  ASSERT_TRUE(ann.isAnswered());
  EXPECT_EQ(ann.count<SrvRemoveFromWaitListOk>(), 1u);
  EXPECT_EQ(ann.count<SrvRemoveFromWaitListError>(), 1u);
  EXPECT_TRUE(mayWait(ann, 6));
  // Descriptions that no table of this house can ever meet.
  EXPECT_FALSE(mayDescribe(ann, 1, 0, 0, 0, 0, true));
  EXPECT_FALSE(mayDescribe(ann, 2, 0, 0, 0, 0, false));
  EXPECT_FALSE(mayDescribe(ann, 1, 5, 0, 0, 0, false));
  EXPECT_FALSE(mayDescribe(ann, 1, 0, 1, 0, 0, false));
  EXPECT_FALSE(mayDescribe(ann, 1, 0, 0, 2, 0, false));
  EXPECT_FALSE(mayDescribe(ann, 1, 0, 0, 1, -1, false));
  EXPECT_TRUE(mayDescribe(ann, 1, 4, 4, 1, 1, false));  // table 7, once somebody sits there
  EXPECT_FALSE(mayDescribe(ann, 1, 0, 0, 0, 0, false));
  // A player comes to sit there: Ann is invited and waits for nothing else.
  Guest &ben = guests[1], &cy = guests[2];
  ann.forget();
  seat(ben, 7, 0);
  ASSERT_NE(ann.hears<SrvWaitList>(), nullptr);
  EXPECT_EQ(ann.heard<SrvWaitList>()->gameID(), 7u);
  EXPECT_EQ(place.server.house().waitLists().length(6), 0u);
  EXPECT_FALSE(mayWait(ann, 1));  // invited
  EXPECT_FALSE(mayWait(ben, 1));  // sits
  // The table closes: who is invited there, waits there, or waits with a description that nothing else meets, is told.
  EXPECT_TRUE(mayWait(cy, 7));
  EXPECT_TRUE(mayDescribe(cy, 1, 4, 4, 0, 0, false));
  ann.forget();
  cy.forget();
  place.server.house().outbox().run([&] { place.server.house().tables()[6]->close(); });
  ASSERT_NE(cy.hears<SrvRemoveFromWaitListOk>(), nullptr);
  ASSERT_NE(ann.hears<SrvRemoveFromWaitListOk>(), nullptr);
  ASSERT_TRUE(cy.isAnswered());
  EXPECT_EQ(cy.count<SrvRemoveFromWaitListOk>(), 2u);
  EXPECT_FALSE(mayWait(cy, 7));
  EXPECT_FALSE(mayDescribe(cy, 1, 4, 4, 1, 1, false));
}

}  // namespace
}  // namespace poker::holdem
