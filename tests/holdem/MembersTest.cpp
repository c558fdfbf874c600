#include "Onlooker.h"
#include "TempFolder.h"

#include <CommandProcessor/types/FieldJson.h>
#include <SQLiteCpp/SQLiteCpp.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>
#include <string>

namespace poker::holdem {
namespace {

using namespace std::string_literals;
using test::Onlooker;
using test::Place;
using testing::ElementsAre;

std::string repeated(unsigned count, std::string_view text) {
  std::string all;
  while (count-- != 0) all += text;
  return all;
}

bool isRecent(const COleDateTime& date) {
  const COleDateTimeSpan ago = COleDateTime::GetCurrentTime() - date;
  return ago >= COleDateTimeSpan(0, 0, 0, -2) && ago < COleDateTimeSpan(0, 0, 1, 0);
}

TEST(Members, KeepTheirOwnTextsAndNothingOfTheHouseOrOfOthers) {
  Place place(test::quickServer(0, 2));
  Onlooker ann(place, 1), ben(place, 2);
  const MemberProfileInfo bens = ben.ask<SrvPlayerProfile, ClGetPlayerProfile>("Player 2").info();

  MemberProfileInfo wanted;
  wanted.memberID = bens.memberID;
  wanted.screenName = bens.screenName;
  wanted.memberSince = wanted.lastVisit = COleDateTime(2000, 1, 1, 0, 0, 0);
  wanted.pictureCode = "mine";
  wanted.realName = ("x" + repeated(25, "\u00FC")).substr(0, 50);  // cut in the middle of a character
  wanted.city = "\x1B[2J'); DROP TABLE account;--";
  wanted.country = "\xFF\xC0 a\x80\x80\x80\x80";
  wanted.occupation = "%s%n{}\r\n\t\x7F";
  wanted.hobbies = repeated(17, "\u2660").substr(0, 50);
  wanted.favouriteGame = repeated(50, "z");
  wanted.birthDate = COleDateTime(1980, 5, 6, 18, 30, 0);
  wanted.aboutMe = "a" + repeated(30'000, "\u00FC");
  const MemberProfileInfo kept = ann.ask<SrvPlayerProfile, ClUpdatePlayerProfile>(wanted).info();
  EXPECT_EQ(kept.screenName, "Player 1");
  EXPECT_NE(kept.memberID, bens.memberID);
  EXPECT_TRUE(isRecent(kept.memberSince) && isRecent(kept.lastVisit));
  EXPECT_EQ(kept.pictureCode, "");
  EXPECT_EQ(kept.realName, "x" + repeated(24, "\u00FC"));
  EXPECT_EQ(kept.city, wanted.city);
  EXPECT_EQ(kept.country, wanted.country);
  EXPECT_EQ(kept.occupation, wanted.occupation);
  EXPECT_EQ(kept.hobbies, repeated(16, "\u2660"));
  EXPECT_EQ(kept.favouriteGame, wanted.favouriteGame);
  EXPECT_EQ(kept.birthDate, COleDateTime(1980, 5, 6, 0, 0, 0));
  EXPECT_EQ(kept.aboutMe, "a" + repeated(999, "\u00FC"));

  // Others see just that, and their own is as it was.
  const MemberProfileInfo seen = ben.ask<SrvPlayerProfile, ClGetPlayerProfile>("pLAYER 1").info();
  EXPECT_EQ(fieldsToJson(seen), fieldsToJson(kept));
  EXPECT_EQ(fieldsToJson(ben.ask<SrvPlayerProfile, ClGetPlayerProfile>("Player 2").info()), fieldsToJson(bens));
  for (const std::string& nobody : {""s, "Player"s, "x' OR '1'='1"s, "\xFF\xFF"s, repeated(30'000, "x")}) {
    EXPECT_FALSE((ben.ask<SrvPlayerProfile, ClGetPlayerProfile>(nobody.c_str()).valid())) << nobody;
  }

  using Limits = std::numeric_limits<double>;
  for (const double bad : {Limits::quiet_NaN(), Limits::infinity(), -Limits::max(), 1e300, 0.5, 40'000'000.0,
                           std::floor(COleDateTime::GetCurrentTime().days()) + 1}) {
    wanted.birthDate = COleDateTime(bad);
    EXPECT_EQ((ann.ask<SrvPlayerProfile, ClUpdatePlayerProfile>(wanted).info().birthDate.bits()), 0u) << bad;
  }
}

TEST(Members, VisitsAreDatedByTheHouse) {
  Place place(test::quickServer(0, 2));
  {
    const Onlooker ann(place, 1);
    place.bank().database().exec("UPDATE account SET opened = 1000, last_visit = 2000");
  }
  Onlooker ann(place, 1);
  const MemberProfileInfo& info = ann.ask<SrvPlayerProfile, ClGetPlayerProfile>("Player 1").info();
  EXPECT_EQ(info.memberSince, COleDateTime::fromTimeT(1000));
  EXPECT_TRUE(isRecent(info.lastVisit));
}

TEST(Members, ShowPicturesThatArePicturesAndNoOthers) {
  Place place(test::quickServer(0, 2));
  Onlooker ann(place, 1), ben(place, 2);
  const auto upload = [&](const std::string& image) {
    ann.client.send<ClUpdateUserPic>(image.data(), static_cast<unsigned short>(image.size()));
  };
  struct Seen {
    std::string image, code, name;
  };
  const auto look = [&](const char* name) {
    const auto& answer = ben.ask<SrvSendUserPic, ClGetNewPicture>(name);
    return Seen{{answer.getPicBuffer(), answer.getPicSize()}, answer.getPicCode(), answer.usrName()};
  };
  const std::string png = "\x89PNG\r\n\x1A\n";
  const std::string largest = png + std::string(Members::kLargestPicture - png.size(), '\0');
  std::set<std::string> codes;
  for (const std::string& image : {largest, png + "\0'"s, "\xFF\xD8\xFF\xE0"s, "GIF87a"s, "GIF89a\0"s}) {
    const std::size_t length = image.size();
    const auto& answer = ann.ask<SrvPlayerProfile, ClUpdateUserPic>(image.data(), static_cast<unsigned short>(length));
    const Seen seen = look("player 1");
    EXPECT_TRUE(seen.image == image) << length;
    EXPECT_EQ(seen.name, "Player 1");
    EXPECT_EQ(seen.code, answer.info().pictureCode);
    codes.insert(seen.code);
  }
  EXPECT_EQ(codes.size(), 5u);
  EXPECT_FALSE(codes.contains(""));

  const Seen before = look("Player 1");
  for (const std::string& image : {largest + "x", "\x89PNG\r\n\x1A"s, "\xFF\xD8"s, "GIF88a"s, "<svg/>"s, "\0"s, "BM"s,
                                   png + std::string(65535 - png.size(), 'x')}) {
    const std::size_t refused = ann.all<SrvAdminMsg>().size();
    upload(image);
    ASSERT_TRUE(place.runUntil([&] { return ann.all<SrvAdminMsg>().size() > refused; })) << image.size();
    EXPECT_TRUE(look("Player 1").image == before.image);
  }
  upload("");
  ASSERT_TRUE(place.runUntil([&] { return ann.all<SrvPlayerProfile>().size() == 6; }));
  EXPECT_EQ(ann.all<SrvPlayerProfile>().back()->info().pictureCode, "");
  for (const char* name : {"Player 1", "Player 2", "Nobody"}) {
    const Seen none = look(name);
    EXPECT_EQ(none.image + none.code, "") << name;
    EXPECT_EQ(none.name, name);
  }
  EXPECT_FALSE(ann.ended || ben.ended);
}

/// A bank's file as a server wrote it that knew no profiles, gifts and promotions.
constexpr const char* kFirstVersion = R"sql(
  PRAGMA application_id = 1347109425; PRAGMA user_version = 1;
  CREATE TABLE account(id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL UNIQUE COLLATE NOCASE,
    password TEXT NOT NULL, email TEXT NOT NULL, issued INTEGER NOT NULL CHECK(issued >= 0),
    balance INTEGER NOT NULL CHECK(balance >= 0), hands_played INTEGER NOT NULL DEFAULT 0,
    hands_won INTEGER NOT NULL DEFAULT 0) STRICT;
  CREATE TABLE seat(account INTEGER PRIMARY KEY REFERENCES account, game INTEGER NOT NULL, seat INTEGER NOT NULL,
    stack INTEGER NOT NULL CHECK(stack >= 0), UNIQUE(game, seat)) STRICT;
  CREATE TABLE hand(number INTEGER PRIMARY KEY CHECK(number > 0), game INTEGER NOT NULL,
    rake INTEGER NOT NULL CHECK(rake >= 0), record TEXT NOT NULL) STRICT;
  CREATE TABLE hand_player(account INTEGER NOT NULL REFERENCES account, hand INTEGER NOT NULL REFERENCES hand,
    PRIMARY KEY(account, hand)) STRICT, WITHOUT ROWID;
  CREATE TABLE house(id INTEGER PRIMARY KEY CHECK(id = 1), rake INTEGER NOT NULL CHECK(rake >= 0)) STRICT;
  INSERT INTO house VALUES(1, 50);
  INSERT INTO account(name, password, email, issued, balance, hands_played) VALUES
    ('Ann', 'the hash', '', 1000, 650, 1), ('Ben', 'x', 'ben@poker.example', 0, 0, 1);
  INSERT INTO seat VALUES(1, 1, 3, 300);
  INSERT INTO hand VALUES(7, 1, 50, 'the record');
  INSERT INTO hand_player VALUES(1, 7), (2, 7);
)sql";

TEST(Bank, TakesAFileOfAnEarlierServer) {
  const test::TempFolder folder;
  const std::string file = folder.file("bank");
  SQLite::Database(file, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec(kFirstVersion);
  // The first time it is brought up to date, the second time it is.
  for (int time = 0; time < 2; ++time) {
    Bank bank({file, 1});
    EXPECT_EQ(bank.audit().difference(), kZeroMoney);
    EXPECT_EQ(bank.audit().issued, RealMoneyType::fromUnits(10));
    EXPECT_EQ(bank.standings().front(),
              (Standing{"Ann", RealMoneyType::fromUnits(10), RealMoneyType::fromHundredths(650),
                        RealMoneyType::fromUnits(3), 1, 0}));
    EXPECT_EQ(bank.handRecord(7), "the record");
    EXPECT_THAT(bank.handsOf(AccountID{2}, 9), ElementsAre(7));
    const Gifts gifts = bank.gifts(AccountID{1}, 9);
    ASSERT_EQ(gifts.newest.size(), 1u);
    EXPECT_EQ(gifts.newest[0].reason, "Welcome");
    EXPECT_EQ(gifts.newest[0].amount, RealMoneyType::fromUnits(10));
    EXPECT_TRUE(bank.gifts(AccountID{2}, 9).newest.empty());

    Members members(bank);
    MemberProfileInfo info = members.profile("ann").value();
    EXPECT_EQ(info.memberSince.bits(), 0u);
    EXPECT_EQ(info.city, time == 0 ? "" : "Reno");
    info.city = "Reno";
    EXPECT_EQ(members.change(AccountID{1}, info).city, "Reno");
    EXPECT_EQ(bank.openAccount("Cy", "secret", "", kZeroMoney).has_value(), time == 0);
  }
}

}  // namespace
}  // namespace poker::holdem
