#include <CommandProcessor/types/ActionOptionsManager.h>
#include <CommandProcessor/types/DurationText.h>
#include <CommandProcessor/types/FieldJson.h>
#include <CommandProcessor/types/NextTurnOptions.h>
#include <CommandProcessor/types/Pot.h>
#include <tests/support/WireBytes.h>

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace poker::test {
namespace {

RealMoneyType cents(std::int64_t count) { return RealMoneyType::fromHundredths(count); }

constexpr const char* kNoLog = "error. Invalid action code!!!!";

TEST(UserActionTexts, AreKeptByteForByteForEveryBitAndNoOther) {
  struct Row {
    std::uint32_t code;
    const char* chat;
    const char* sign;
    const char* log;
  };
  const Row rows[] = {
      {0, "Unknown", "no action", kNoLog},
      {1, "ante", "Ante", "Ante "},
      {2, "has kill blind", "Kill Blind", kNoLog},
      {4, "checks", "Checks", "Check "},
      {8, "bets", "Bets", "Bet "},
      {16, "calls", "Calls", "Call "},
      {32, "raises", "Raises", "Raise "},
      {64, "folds", "Folds", "Fold "},
      {128, "bring in", "Bring in", "Bring in "},
      {256, "makes big raise", "Big raise", kNoLog},
      {512, "posts", "Posts", "Post "},
      {1024, "Unknown", "Unknown", kNoLog},
      {2048, "sitting out", "Sitting Out", kNoLog},
      {4096, "allin", "AllIn", "AllIn"},
      {8192, "has big blind", "Big Blind", "BiglBlind"},
      {16384, "has small blind", "Small Blind", "SmallBlind "},
      {32768, "Unknown", "Unknown", kNoLog},
      {65536, "Unknown", "Unknown", kNoLog},
      {131072, "shows cards", "Shows Cards", "ShowCards"},
      {262144, "mucks cards", "Mucks Cards", "MuckCards"},
      {524288, "Unknown", "Unknown", kNoLog},
      {1048576, "straddles", "Straddle", "Straddle"},
      {2097152, "wait BB", "Wait For BigBlind", kNoLog},
      {4194304, "Unknown", "Unknown", kNoLog},
      {0x80000000u, "Unknown", "Unknown", kNoLog},
      {0xFFFFFFFFu, "Unknown", "Unknown", kNoLog},
      {12, "Unknown", "Unknown", kNoLog},
  };
  for (const Row& row : rows) {
    const UserAction action{row.code};
    EXPECT_STREQ(actionCodeToStringForChat(action), row.chat) << row.code;
    EXPECT_STREQ(actionCodeToStringForSign(action), row.sign) << row.code;
    EXPECT_STREQ(actionCodeToStringForLog(action), row.log) << row.code;
  }
}

TEST(NextTurnOptions, TellsWhatIsOffered) {
  NextTurnOptions turns;
  turns.addFoldOption();
  turns.addCheckOption();
  turns.addOption(UserAction::Bet, cents(100), cents(900));
  EXPECT_EQ(turns.getActionCodes(), 76u);
  turns.addSitOutOption();
  EXPECT_EQ(turns.getActionCodes(), 76u + 2048u);
  EXPECT_EQ(turns.count(), 4u);
  auto least = cents(1), most = cents(1);
  turns.getOptionChips(UserAction::Bet, least, most);
  EXPECT_EQ(std::pair(least, most), std::pair(cents(100), cents(900)));
  turns.getOptionChips(UserAction::Raise, least, most);
  EXPECT_EQ(std::pair(least, most), std::pair(cents(0), cents(0))) << "not offered";
  turns.addOption(UserAction::Bet, cents(7));
  turns.getOptionChips(UserAction::Bet, least, most);
  EXPECT_EQ(std::pair(least, most), std::pair(cents(7), cents(7))) << "replaced";
  EXPECT_EQ(turns.count(), 4u);
  EXPECT_TRUE(turns.haveMinMax());
  turns.clear();
  EXPECT_EQ(turns, NextTurnOptions()) << "clearing takes the flag back too";
  turns.addOption(UserAction::Call, cents(200));
  EXPECT_FALSE(turns.haveMinMax());
}

TEST(NextTurnOptions, ReadingAddsToWhatIsThere) {
  NextTurnOptions turns;
  turns.addOption(UserAction::Call, cents(1), cents(2));
  turns.addFoldOption();
  ASSERT_EQ(decode(turns, hex("00 02 10 00 00 00 C8 00 00 00 00 00 00 00 04 00 00 00 05 00 00 00 00 00 00 00")), "");
  EXPECT_FALSE(turns.haveMinMax());
  EXPECT_EQ(turns.options(), (NextTurnOptions::Options{{UserAction::Check, {cents(5), cents(5)}},
                                                       {UserAction::Call, {cents(200), cents(200)}},
                                                       {UserAction::Fold, {cents(0), cents(0)}}}));
  const NextTurnOptions before = turns;
  EXPECT_EQ(decode(turns, hex("01 01 08 00 00 00 05 00 00 00 00 00 00 00 00")), kNumberFails);
  EXPECT_EQ(turns, before);
}

TEST(NextTurnOptions, TellsThatTheyAreTooMany) {
  NextTurnOptions turns;
  for (std::uint32_t code = 0; code < 255; ++code) turns.addOption(UserAction{code}, cents(code));
  EXPECT_TRUE(turns.fitsOnWire());
  NextTurnOptions read;
  ASSERT_EQ(decode(read, encode(turns)), "");
  EXPECT_EQ(read, turns);
  turns.addOption(UserAction{255}, cents(0));
  EXPECT_FALSE(turns.fitsOnWire());
  EXPECT_THROW(fieldsFromJson(read, fieldsToJson(turns)), FieldValueError);
}

TEST(NextTurnOptions, JsonDropsMaximaThatDoNotTravel) {
  NextTurnOptions turns;
  turns.addOption(UserAction::Call, cents(200));
  NextTurnOptions read;
  read.addCheckOption();
  fieldsFromJson(read, R"({"haveMinMax":false,"options":[{"key":16,"value":{"minimum":"2","maximum":"9"}}]})");
  EXPECT_EQ(read, turns);
}

TEST(Pot, HasA16BitCountOfSidePots) {
  Pot pot(cents(300));
  pot.addSidePot(cents(5));
  pot.addSidePot(cents(-1));
  EXPECT_EQ(pot.total(), cents(304));
  Pot read(cents(9));
  for (int i = 0; i < 5; ++i) read.addSidePot(cents(i));
  ASSERT_EQ(decode(read, encode(pot)), "");
  EXPECT_EQ(read, pot);
  for (std::size_t i = pot.sidePots().size(); i < 65535; ++i) pot.addSidePot(cents(1));
  EXPECT_TRUE(pot.fitsOnWire());
  pot.addSidePot(cents(1));
  EXPECT_FALSE(pot.fitsOnWire());
  pot.clear();
  EXPECT_EQ(pot, Pot());
  EXPECT_EQ(decode(pot, hex("00 00 00 00 00 00 00 00 FF FF 01")), kNumberFails);
}

constexpr auto kNoMatch = std::pair(UserAction::NoAction, RealMoneyType::fromHundredths(-100));

TEST(ActionOptionsManager, MatchesTheLowestActionForTheOfferedAmount) {
  ActionOptionsManager manager;
  const SeatID seat(3);
  EXPECT_EQ(manager.match({{UserAction::Check, cents(0)}}, seat), kNoMatch) << "nothing was chosen";

  manager.addOption(UserAction::Raise, cents(500), seat);
  EXPECT_EQ(manager.match({{UserAction::Raise, cents(600)}}, seat), kNoMatch);
  EXPECT_EQ(manager.match({{UserAction::Raise, cents(500)}}, seat), std::pair(UserAction::Raise, cents(500)));
  EXPECT_EQ(manager.match({}, seat), kNoMatch);

  manager.addOption(UserAction::Fold, cents(0), seat);
  manager.addOption(UserAction::Call, cents(0), seat);
  const ActionOptionsManager::Amounts offered{{UserAction::Call, cents(200)}, {UserAction::Fold, cents(0)}};
  EXPECT_EQ(manager.match(offered, seat), std::pair(UserAction::Call, cents(200)));
  EXPECT_EQ(manager.match(offered, seat), std::pair(UserAction::Call, cents(200))) << "the choice stays";
  EXPECT_EQ(manager.match(offered, SeatID(4)), kNoMatch);
  manager.removeOption(UserAction::Call, seat);
  EXPECT_EQ(manager.match(offered, seat), std::pair(UserAction::Fold, cents(0)));
  manager.removeOption(UserAction::Call, SeatID(4));  // of a seat that chose nothing
  manager.clearOptions(SeatID(4));
  manager.clearOptions(seat);
  EXPECT_EQ(manager.match(offered, seat), kNoMatch);
}

// The rule as it is told, over choices in any order: a choice is considered when nothing has matched yet or its code is
// not above the match.
std::pair<UserAction, RealMoneyType> told(const std::vector<std::pair<UserAction, RealMoneyType>>& choices,
                                          const std::map<UserAction, RealMoneyType>& offered) {
  auto result = kNoMatch;
  bool found = false;
  for (const auto& [action, amount] : choices) {
    if (found && action > result.first) continue;
    const auto offer = offered.find(action);
    if (offer == offered.end() || (amount != cents(0) && amount != offer->second)) continue;
    result = {action, offer->second};
    found = true;
  }
  return result;
}

TEST(ActionOptionsManager, AgreesWithTheRuleOnRandomChoices) {
  std::mt19937 random(3);
  const UserAction actions[] = {UserAction::NoAction, UserAction::Check, UserAction::Call,
                                UserAction::Raise,    UserAction::Fold,  UserAction{0xFFFFFFFF}};
  int matched = 0;
  ActionOptionsManager manager;
  for (int round = 0; round < 20000; ++round) {
    if (round % 2)
      manager.clearOptionForAll();
    else
      for (std::uint8_t seat = 0; seat < 3; ++seat) manager.clearOptions(SeatID(seat));
    std::map<std::uint8_t, std::map<UserAction, RealMoneyType>> chosen;
    for (auto i = random() % 12; i-- > 0;) {
      const auto seat = static_cast<std::uint8_t>(random() % 3);
      const UserAction action = actions[random() % std::size(actions)];
      if (random() % 5 == 0) {
        manager.removeOption(action, SeatID(seat));
        chosen[seat].erase(action);
      } else {
        const auto amount = cents(random() % 3);
        manager.addOption(action, amount, SeatID(seat));
        chosen[seat][action] = amount;
      }
    }
    std::map<UserAction, RealMoneyType> offered;
    ActionOptionsManager::Amounts amounts;
    for (auto i = random() % 4; i-- > 0;) {
      const UserAction action = actions[random() % std::size(actions)];
      offered[action] = cents(random() % 3);
      amounts.set(action, offered[action]);
    }
    for (std::uint8_t seat = 0; seat < 3; ++seat) {
      std::vector<std::pair<UserAction, RealMoneyType>> choices(chosen[seat].begin(), chosen[seat].end());
      std::shuffle(choices.begin(), choices.end(), random);
      const auto expected = told(choices, offered);
      ASSERT_EQ(manager.match(amounts, SeatID(seat)), expected) << round;
      matched += expected != kNoMatch;
    }
  }
  EXPECT_GT(matched, 1000);
}

TEST(DurationText, NamesEachPartThatIsNotZero) {
  const std::pair<std::int32_t, const char*> rows[] = {
      {INT32_MIN, "0 seconds"},
      {0, "0 seconds"},
      {1, "1 second"},
      {59, "59 seconds"},
      {60, "1 minute"},
      {90, "1 minute and 30 seconds"},
      {1800, "30 minutes"},
      {3600, "1 hour"},
      {3900, "1 hour and 5 minutes"},
      {3661, "1 hour, 1 minute and 1 second"},
      {86400, "1 day"},
      {2 * 86400 + 3600 + 10, "2 days, 1 hour and 10 seconds"},
      {INT32_MAX, "24855 days, 3 hours, 14 minutes and 7 seconds"},
  };
  for (const auto& [seconds, text] : rows) EXPECT_EQ(durationToString(seconds), text);
}

}  // namespace
}  // namespace poker::test
