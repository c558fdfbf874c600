#include <examples/holdem/server/TableText.h>
#include <examples/holdem/server/tournament/TourText.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace poker::holdem {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::ElementsAre;
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

std::string complaintOf(const std::string& text) {
  TableSettings usual;
  usual.startWith = 3;
  try {
    tableFromText(text, usual);
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
  return "nothing";
}

TEST(TableText, SaysWhatIsWrong) {
  const std::pair<std::string, const char*> bad[] = {
      {"", "KEY=VALUE"},
      {"seats=6,", "KEY=VALUE"},
      {"seats=6,seats=7", "twice"},
      {"chairs=6", "chairs"},
      {"seats=", "from 2 to 10"},
      {"seats=11", "from 2 to 10"},
      {"seats=6x", "from 2 to 10"},
      {"seats=99999999999999999999", "from 2 to 10"},
      {"blinds=1", "two amounts"},
      {"blinds=1/2/3", "two amounts"},
      {"blinds=1/-2", "two amounts"},
      {"blinds=1/2.125", "two amounts"},
      {"blinds=1/2147483647.01", "two amounts"},
      {"blinds=2/1", "small blind"},
      {"blinds=0/1", "small blind"},
      {"blinds=50/100", "least buy-in"},  // of the usual 40
      {"buy-in=50/40", "least buy-in"},
      {"seats=2", "more players than there are seats"},
      {"game=pot-limit", "no-limit or fixed-limit"},
      {"name=", "name has"},
      {"name=" + std::string(kLongestTableName + 1, 'x'), "name has"},
      {"name=\x1B[2J", "control characters"},
  };
  for (const auto& [text, why] : bad) {
    EXPECT_THAT(complaintOf(text), AllOf(HasSubstr('"' + text + '"'), HasSubstr(why))) << text;
  }
}

TEST(TableText, KeepsThePasswordToItselfWhateverIsWrong) {
  for (const char* text : {"password=sesame,seats=1", "seats=1,password=sesame", "password=x,sesame,seats=1",
                           "password=x,sesame,sesame", "password=sesame,password=sesame", "password=sesame,chairs=6"}) {
    EXPECT_THAT(complaintOf(text), AllOf(HasSubstr("password=***"), Not(HasSubstr("sesame")))) << text;
  }
  EXPECT_THAT(complaintOf("name=River,password=x,sesame,seats=1"),
              StartsWith("table \"name=River,password=***,seats=1\""));
  EXPECT_THAT(complaintOf(",seats=6"), StartsWith("table \",seats=6\""));
}

constexpr RealMoneyType units(std::int64_t count) { return RealMoneyType::fromHundredths(count * 100); }

TEST(TourText, HasWhatIsWrittenAndTheRestAsUsual) {
  TourSettings usual;
  usual.seats = 6;
  usual.replyTime = 7s;
  usual.seed = 3;
  const TourSettings tour = tourFromText(
      "name=Sunday = fun,about=One\nTwo,game=fixed-limit,players=4-50,password=x,invited=Ann;Bob B;Cy;Dan,most-wins=2,"
      "opens=1.5,start=600,start-with=4,seating=3,buy-in=50.5+5,guaranteed=1000,prizes=50;33.34;16.66,chips=2000,"
      "levels=10/20;15/30;15/40,level=12hands,break=2/90,rebuys=3/2,rebuy=50:2000,add-on=25:3000,rebuy-time=20,"
      "absent-time=0",
      usual);
  EXPECT_EQ(tour.name, "Sunday = fun");
  EXPECT_EQ(tour.description, "One\nTwo");
  EXPECT_EQ(tour.limit, LimitType::FixedLimit);
  EXPECT_EQ(tour.seats, 6u);
  EXPECT_EQ(tour.minPlayers, 4u);
  EXPECT_EQ(tour.maxPlayers, 50u);
  EXPECT_THAT(tour.invited, ElementsAre("Ann", "Bob B", "Cy", "Dan"));
  EXPECT_EQ(tour.mostWins, 2u);
  EXPECT_EQ(tour.opensAfter, 1500ms);
  EXPECT_EQ(tour.startsAfter, 600s);
  EXPECT_EQ(tour.startWith, 4u);
  EXPECT_EQ(tour.seatingTime, 3s);
  EXPECT_EQ(tour.buyIn, RealMoneyType::fromHundredths(5050));
  EXPECT_EQ(tour.fee, units(5));
  EXPECT_EQ(tour.guaranteed, units(1000));
  EXPECT_THAT(tour.shares, ElementsAre(5000u, 3334u, 1666u));
  EXPECT_EQ(tour.chips, units(2000));
  ASSERT_EQ(tour.levels.size(), 3u);
  EXPECT_EQ(tour.levels[2].smallBlind, units(15));
  EXPECT_EQ(tour.levels[2].bigBlind, units(40));
  EXPECT_EQ(tour.switchType, TOUR_NAMES::SwitchType::ByHands);
  EXPECT_EQ(tour.levelLength, 12u);
  EXPECT_EQ(tour.breakEvery, 2u);
  EXPECT_EQ(tour.breakTime, 90s);
  EXPECT_EQ(tour.rebuys, 3u);
  EXPECT_EQ(tour.rebuyLevels, 2u);
  EXPECT_EQ(tour.rebuyPrice, units(50));
  EXPECT_EQ(tour.rebuyChips, units(2000));
  EXPECT_EQ(tour.addOnPrice, units(25));
  EXPECT_EQ(tour.addOnChips, units(3000));
  EXPECT_EQ(tour.replyTime, 7s);
  EXPECT_EQ(tour.rebuyTime, 20s);
  EXPECT_EQ(tour.absentTime, 0s);
  EXPECT_EQ(tour.seed, 3u);

  const TourSettings quick = tourFromText("players=6,start-with=6,buy-in=5,blinds=25/50,level=300s", usual);
  EXPECT_EQ(quick.minPlayers, 2u);
  EXPECT_EQ(quick.maxPlayers, 6u);
  EXPECT_EQ(quick.startsAfter, std::nullopt);
  EXPECT_EQ(quick.fee, kZeroMoney);
  EXPECT_EQ(quick.levels.front().bigBlind, units(50));
  EXPECT_GT(quick.levels.size(), 10u);
  EXPECT_EQ(quick.levelLength, 300u);
  EXPECT_EQ(quick.switchType, TOUR_NAMES::SwitchType::ByTime);
  EXPECT_EQ(quick.type(), TOUR_NAMES::TourType::SingleTable);
  EXPECT_EQ(tourFromText("start=1", usual).levels.front().bigBlind, units(20));
  EXPECT_LE(tourFromText("start=1,chips=400000,blinds=100000/200000", usual).levels.back().bigBlind, kLargestMoney);
}

TEST(TourText, SaysWhatIsWrong) {
  const std::pair<std::string, const char*> bad[] = {
      {"", "KEY=VALUE"},
      {"start=60,", "KEY=VALUE"},
      {"start=60,start=60", "twice"},
      {"begin=60", "none of about, absent-time,"},
      {"name=", "a tournament's name has"},
      {"about=\x1B[2J", "control characters"},
      {"about=" + std::string(kLongestTourText + 1, 'x'), "description"},
      {"game=omaha", "no-limit or fixed-limit"},
      {"seats=11", "from 2 to 10"},
      {"players=", "players is a number"},
      {"players=1-9", "players is a number"},
      {"players=2-5001", "from 2 to 5000"},
      {"invited=Ann;;Ben", "nobody is \"\""},
      {"start=-1", "start takes seconds"},
      {"start=1e3", "start takes seconds"},
      {"start=", "start takes seconds"},
      {"start=nan", "start takes seconds"},
      {"start=99999999999", "0 to 2592000"},
      {"reply-time=86401", "0 to 86400"},
      {"buy-in=50+", "50+5"},
      {"buy-in=cheap", "an amount"},
      {"guaranteed=-1", "an amount"},
      {"prizes=50;;50", "per cents"},
      {"prizes=100;0", "per cents"},
      {"prizes=50;50.001", "per cents"},
      {"blinds=20/10", "small blind"},
      {"levels=10/20;", "two amounts"},
      {"level=300", "300s or 12hands"},
      {"level=0s", "from 1 to 86400"},
      {"level=hands", "from 1 to 10000"},
      {"break=5", "LEVELS/SECONDS"},
      {"rebuys=5", "COUNT/LEVELS"},
      {"rebuy=5", "10:1500"},
      // Each is fine for itself.
      {"name=Sunday", "neither start nor start-with"},
      {"start=60,players=9-8", "the least must not be above the most"},
      {"players=6,start-with=7", "between the least and the most"},
      {"players=4-6,start-with=3", "between the least and the most"},
      {"start=60,players=3-6,invited=Ann;Ben", "fewer players are invited"},
      {"start-with=3,invited=Ann;Ben", "fewer players are invited"},
      {"opens=60,start=60", "open before it starts"},
      {"start=60,blinds=10/20,levels=10/20", "both tell"},
      {"start=60,levels=10/20;15/20", "higher than the one before"},
      {"start=60,chips=19.99", "first big blind"},
      {"start=60,break=3/0", "break's time"},
      {"start=60,rebuys=1/3", "re-buys need chips"},
      {"start=60,rebuy=10:1500", "nobody may re-buy"},
      {"start=60,add-on=10:0", "an add-on needs chips"},
      {"start=60,add-on=10:1500", "must tell how many"},
      {"start=60,rebuys=1/1,rebuy=10:1500,levels=10/20", "before the last of 1 levels"},
      {"start=60,rebuys=1/3,rebuy=10:1500,rebuy-time=0", "re-buy time"},
      {"start=60,players=5000,chips=1000000", "all chips together"},
      {"start=60,players=5000,rebuys=1000/3,rebuy=0:1500", "all chips together"},
      {"start=60,players=5000,buy-in=1000000+0", "prize fund"},
      {"start=60,prizes=60;30", "100 per cent"},
      {"start=60,prizes=40;60", "than the one before it"},
      {"start=60,players=2,prizes=50;30;20", "more prizes than players"},
      {"start=60,reply-time=0", "reply time"},
  };
  for (const auto& [text, why] : bad) {
    try {
      tourFromText(text, {});
      ADD_FAILURE() << text << " is taken";
    } catch (const std::invalid_argument& error) {
      EXPECT_THAT(error.what(), HasSubstr("tournament \"" + text + "\": ")) << text;
      EXPECT_THAT(error.what(), HasSubstr(why)) << text;
    }
  }
}

}  // namespace
}  // namespace poker::holdem
