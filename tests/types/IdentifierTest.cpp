#include <CommandProcessor/types/RealMoneyAcc.h>
#include <CommandProcessor/types/TourMoneyChooser.h>
#include <CommandProcessor/types/TypeCodecs.h>
#include <CommandProcessor/wire/RecordImpl.h>
#include <tests/support/WireBytes.h>

#include <gtest/gtest.h>

#include <set>

namespace poker::test {
namespace {

RealMoneyType cents(std::int64_t count) { return RealMoneyType::fromHundredths(count); }

struct Ids : Record<Ids> {
  SeatID seat;
  ConnectionID connection;
  std::set<SeatID> seats{7, 0, SeatID(), 3};
  static void fields(auto& self, auto&& field) {
    field("seat", self.seat);
    field("connection", self.connection);
    field("seats", wire::list<std::uint8_t>(self.seats));
  }
};

TEST(Identifiers, TravelAsTheirNumbersAndTellWhenUnset) {
  Ids ids;
  EXPECT_FALSE(ids.seat.isValid() || ids.connection.isValid());
  EXPECT_TRUE(SeatID(0).isValid());
  EXPECT_EQ(toHex(encode(ids)), "64 FF FF FF FF 04 00 03 07 64");
  ASSERT_EQ(decode(ids, hex("00 01 00 00 00 02 64 09")), "");
  EXPECT_EQ(ids.seat, SeatID(0));
  EXPECT_EQ(ids.connection, ConnectionID(1));
  EXPECT_EQ(ids.seats, (std::set<SeatID>{9, 100}));
}

TEST(RealMoneyAcc, IsA16BitNumberBehindTwoVirtualOperations) {
  RealMoneyAcc account(0x1234);
  EXPECT_EQ(toHex(encode(account)), "34 12");
  EXPECT_EQ(decode(account, hex("FF FF")), "");
  EXPECT_EQ(account.descriptor(), 0xFFFF);
  EXPECT_EQ(decode(account, hex("FF")), kNumberFails);
  EXPECT_EQ(account, RealMoneyAcc(0xFFFF));

  struct Watched : RealMoneyAcc {
    mutable bool asked = false;
    void serialize(SerializeCommandBuf&) const override { asked = true; }
  } derived;
  const RealMoneyAcc& base = derived;
  encode(base);
  EXPECT_TRUE(derived.asked);
}

TEST(TourMoneyChooser, AnAbsentFlagReadsAsTrue) {
  EXPECT_TRUE(TourMoneyChooser::empty().chosen());
  EXPECT_EQ(toHex(encode(TourMoneyChooser({}, {}, false))), "01");
  TourMoneyChooser read(cents(1), cents(2), false);
  ASSERT_EQ(decode(read, hex("01")), "");
  EXPECT_EQ(read, TourMoneyChooser::empty());
}

TEST(TourMoneyChooser, ChoosesOnceAndKeepsTheAmountThatWasMeant) {
  TourMoneyChooser cash(cents(1), cents(2), false), tour = cash;
  cash.choose(true);
  EXPECT_EQ(cash, TourMoneyChooser(cents(1), cents(0), true));
  tour.choose(false);
  EXPECT_EQ(tour, TourMoneyChooser(cents(0), cents(2), true));
  tour.choose(true);
  EXPECT_EQ(tour, TourMoneyChooser(cents(0), cents(2), true)) << "was decided already";
  TourMoneyChooser both(cents(1), cents(2), true);
  both.choose(true);
  EXPECT_EQ(both.tourMoney(), cents(2)) << "was decided already";
}

}  // namespace
}  // namespace poker::test
