#include "Guest.h"

#include <CommandProcessor/types/FieldJson.h>
#include <SQLiteCpp/SQLiteCpp.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>
#include <string>

namespace poker::holdem {
namespace {

using namespace std::string_literals;
using test::Guest;
using test::Place;

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
  Guest ann(place, "Player 1"), ben(place, "Player 2");
  ASSERT_TRUE(ann.comesIn() && ben.comesIn());
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
    Guest ann(place, "Player 1");
    ASSERT_TRUE(ann.comesIn());
    place.bank().database().exec("UPDATE account SET opened = 1000, last_visit = 2000");
  }
  Guest ann(place, "Player 1");
  ASSERT_TRUE(ann.comesIn());
  const MemberProfileInfo& info = ann.ask<SrvPlayerProfile, ClGetPlayerProfile>("Player 1").info();
  EXPECT_EQ(info.memberSince, COleDateTime::fromTimeT(1000));
  EXPECT_TRUE(isRecent(info.lastVisit));
}

TEST(Members, ShowPicturesThatArePicturesAndNoOthers) {
  Place place(test::quickServer(0, 2));
  Guest ann(place, "Player 1"), ben(place, "Player 2");
  ASSERT_TRUE(ann.comesIn() && ben.comesIn());
  const auto upload = [&](const std::string& image) {
    ann.send<ClUpdateUserPic>(image.data(), static_cast<unsigned short>(image.size()));
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
    const std::size_t refused = ann.count<SrvAdminMsg>();
    upload(image);
    ASSERT_TRUE(place.runUntil([&] { return ann.count<SrvAdminMsg>() > refused; })) << image.size();
    EXPECT_TRUE(look("Player 1").image == before.image);
  }
  upload("");
  ASSERT_TRUE(place.runUntil([&] { return ann.count<SrvPlayerProfile>() == 6; }));
  EXPECT_EQ(ann.heard<SrvPlayerProfile>()->info().pictureCode, "");
  for (const char* name : {"Player 1", "Player 2", "Nobody"}) {
    const Seen none = look(name);
    EXPECT_EQ(none.image + none.code, "") << name;
    EXPECT_EQ(none.name, name);
  }
  EXPECT_FALSE(ann.isClosed || ben.isClosed);
}

}  // namespace
}  // namespace poker::holdem
