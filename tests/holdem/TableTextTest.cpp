#include <examples/holdem/server/TableText.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace poker::holdem {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

TEST(TableText, HasWhatIsWrittenAndTheRestAsUsual) {
  TableSettings usual;
  usual.gameID = 4;
  usual.password = "all";
  usual.seats = 8;
  const TableSettings table =
      tableFromText("buy-in=40/200.5,name=River = Bank,game=fixed-limit,blinds=0.5/1,password=", usual);
  EXPECT_EQ(table.gameID, 4u);
  EXPECT_EQ(table.name, "River = Bank");
  EXPECT_EQ(table.stakes.limit, LimitType::FixedLimit);
  EXPECT_EQ(table.stakes.smallBlind, RealMoneyType::fromHundredths(50));
  EXPECT_EQ(table.maxBuyIn, RealMoneyType::fromHundredths(20050));
  EXPECT_EQ(table.seats, 8u);
  EXPECT_EQ(table.password, "");
  EXPECT_EQ(tableFromText("seats=10", usual).password, "all");
}

TEST(TableText, SaysWhatIsWrong) {
  const auto complaint = [](const std::string& text) -> std::string {
    TableSettings usual;
    usual.startWith = 3;
    try {
      tableFromText(text, usual);
    } catch (const std::invalid_argument& error) {
      EXPECT_THAT(error.what(), HasSubstr('"' + text + '"'));
      return error.what();
    }
    return "nothing";
  };
  EXPECT_THAT(complaint(""), HasSubstr("KEY=VALUE"));
  EXPECT_THAT(complaint("seats=6,"), HasSubstr("KEY=VALUE"));
  EXPECT_THAT(complaint("seats=6,seats=7"), HasSubstr("twice"));
  EXPECT_THAT(complaint("chairs=6"), HasSubstr("chairs"));
  for (const char* seats : {"seats=", "seats=1", "seats=11", "seats=-3", "seats=6x", "seats=99999999999999999999"}) {
    EXPECT_THAT(complaint(seats), HasSubstr("from 2 to 10")) << seats;
  }
  for (const char* blinds : {"blinds=1", "blinds=1/", "blinds=/2", "blinds=1/2/3", "blinds=1/-2", "blinds=1/1e3",
                             "blinds=1/2.125", "blinds=1/2147483647.01", "blinds= 1/2"}) {
    EXPECT_THAT(complaint(blinds), HasSubstr("two amounts")) << blinds;
  }
  EXPECT_THAT(complaint("blinds=2/1"), HasSubstr("small blind"));
  EXPECT_THAT(complaint("blinds=0/1"), HasSubstr("small blind"));
  EXPECT_THAT(complaint("blinds=50/100"), HasSubstr("least buy-in"));  // of the usual 40
  EXPECT_THAT(complaint("buy-in=50/40"), HasSubstr("least buy-in"));
  EXPECT_THAT(complaint("seats=2"), HasSubstr("more players than there are seats"));
  EXPECT_THAT(complaint("game=pot-limit"), HasSubstr("no-limit or fixed-limit"));
  EXPECT_THAT(complaint("name="), HasSubstr("name has"));
  EXPECT_THAT(complaint("name=" + std::string(kLongestTableName + 1, 'x')), HasSubstr("name has"));
  EXPECT_THAT(complaint("name=\x1B[2J"), HasSubstr("control characters"));
}

TEST(TableText, KeepsThePasswordToItselfWhateverIsWrong) {
  const auto complaint = [](const std::string& text) -> std::string {
    try {
      tableFromText(text, {});
    } catch (const std::invalid_argument& error) {
      return error.what();
    }
    return "nothing";
  };
  for (const char* text : {"password=sesame,seats=1", "seats=1,password=sesame", "password=x,sesame,seats=1",
                           "password=x,sesame,sesame", "password=sesame,password=sesame", "password=sesame,chairs=6"}) {
    EXPECT_THAT(complaint(text), AllOf(HasSubstr("password=***"), Not(HasSubstr("sesame")))) << text;
  }
  EXPECT_THAT(complaint("name=River,password=x,sesame,seats=1"),
              StartsWith("table \"name=River,password=***,seats=1\""));
  EXPECT_THAT(complaint(",seats=6"), StartsWith("table \",seats=6\""));
}

}  // namespace
}  // namespace poker::holdem
