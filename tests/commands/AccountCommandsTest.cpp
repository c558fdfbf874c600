#include <CommandProcessor/commands/account/AccountCommands.h>
#include <CommandProcessor/types/FieldJson.h>
#include <hostkit/CommandHandle.h>
#include <tests/support/WireBytes.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace poker::test {
namespace {

RealMoneyType cents(std::int64_t count) { return RealMoneyType::fromHundredths(count); }

template <class T>
void append(Bytes& bytes, const T& more) {
  bytes.insert(bytes.end(), more.begin(), more.end());
}

const COleDateTime kDay(44250.25);
const COleDateTime kOtherDay(1.5, COleDateTime::null);
const char* const kDayBytes = "00 00 00 00 48 9B E5 40 00 00 00 00";
const char* const kOtherDayBytes = "00 00 00 00 00 00 F8 3F 02 00 00 00";

ReplayInfo aReplay() {
  ReplayInfo replay(99);
  replay.setStarted(kDay);
  replay.setEnded(kOtherDay);
  return replay;
}

ReplayRequestInfo everyCriterion() {
  ReplayRequestInfo info;
  info.setGameID(7);
  info.setFrom(kDay);
  info.setTo(kOtherDay);
  info.setMostHands(20);
  info.setGameType(GameType{0x0201});
  info.setOpponent("Bo");
  info.addReplay(aReplay());
  return info;
}

TEST(ReplayRequest, SendsWhatEachOfThe128MasksNamesAndForgetsTheRest) {
  struct Part {
    ReplayRequestInfo::Criterion criterion;
    std::uint32_t bit;
    Bytes bytes;
  };
  const Part parts[] = {
      {ReplayRequestInfo::kGameID, 0x100, hex("07 00 00 00")},
      {ReplayRequestInfo::kFrom, 0x08, hex(kDayBytes)},
      {ReplayRequestInfo::kTo, 0x10, hex(kOtherDayBytes)},
      {ReplayRequestInfo::kMostHands, 0x04, hex("14 00 00 00")},
      {ReplayRequestInfo::kGameType, 0x01, hex("01 02")},
      {ReplayRequestInfo::kOpponent, 0x02, hex("42 6F 00")},
      {ReplayRequestInfo::kReplays, 0x20, hex(std::string("01 00 00 00") + kDayBytes + kOtherDayBytes)},
  };
  for (unsigned choice = 0; choice < 128; ++choice) {
    ReplayRequestInfo info = everyCriterion();
    info.setListOnly(choice % 2 == 1);
    Bytes expected;
    std::uint32_t mask = 0;
    for (unsigned i = 0; i < 7; ++i) {
      if ((choice >> i & 1) == 0) {
        info.drop(parts[i].criterion);
        continue;
      }
      mask |= parts[i].bit;
      append(expected, parts[i].bytes);
    }
    expected.insert(expected.begin(), {static_cast<std::uint8_t>(mask), static_cast<std::uint8_t>(mask >> 8), 0, 0});
    expected.push_back(choice % 2 == 1);
    EXPECT_EQ(toHex(encode(info)), toHex(expected));

    ReplayRequestInfo read = everyCriterion();
    EXPECT_EQ(decode(read, expected), "");
    EXPECT_EQ(toHex(encode(read)), toHex(expected));
    EXPECT_EQ(read.mask(), mask);
    EXPECT_EQ(read.gameID() != 0, info.has(ReplayRequestInfo::kGameID)) << mask;
    EXPECT_EQ(read.from() == kDay, info.has(ReplayRequestInfo::kFrom)) << mask;
    EXPECT_EQ(read.to().GetStatus() != 0, info.has(ReplayRequestInfo::kTo)) << mask;
    EXPECT_EQ(read.gameType() != GameType{}, info.has(ReplayRequestInfo::kGameType)) << mask;
    EXPECT_EQ(read.mostHands() != 0, info.has(ReplayRequestInfo::kMostHands)) << mask;
    EXPECT_EQ(!read.opponent().empty(), info.has(ReplayRequestInfo::kOpponent)) << mask;
    EXPECT_EQ(!read.replays().empty(), info.has(ReplayRequestInfo::kReplays)) << mask;
  }
}

TEST(MemberProfile, CutsTextsAtFiftyCharactersAndRefusesLongerOnes) {
  MemberProfileInfo info;
  info.favouriteGame = std::string(50, 'x');
  info.aboutMe = std::string(300, 'y');
  EXPECT_TRUE(info.fitsOnWire());
  const Bytes whole = encode(info);
  info.favouriteGame += 'z';
  EXPECT_FALSE(info.fitsOnWire());
  EXPECT_EQ(encode(info), whole);

  MemberProfileInfo read;
  Bytes longer = whole;
  longer.insert(longer.begin() + 4 + 6, 'x');
  EXPECT_EQ(decode(read, longer), kTextFails);
  EXPECT_EQ(decode(read, whole), "");
  EXPECT_EQ(read.favouriteGame, std::string(50, 'x'));
}

TEST(Pictures, CarryEverySizeThatTheirCountCanTell) {
  const std::string large(65535, '\xFF');
  const auto upload = make<ClUpdateUserPic>(large.data(), static_cast<unsigned short>(65535));
  EXPECT_EQ(bodyOf(*upload).size(), 2u + 65535u);
  const auto picture = make<SrvSendUserPic>("Ann", large.data(), 65535u, "p7");
  const auto read = make<SrvSendUserPic>("", nullptr, 0u, "");
  EXPECT_EQ(decode(*read, bodyOf(*picture)), "");
  EXPECT_EQ(std::string(read->getPicBuffer(), read->getPicSize()), large);
  EXPECT_EQ(read->usrName() + read->getPicCode(), "Annp7");

  upload->init(nullptr, 5);
  EXPECT_EQ(toHex(bodyOf(*upload)), "00 00");
  picture->init("a", nullptr, 5, "b");
  EXPECT_EQ(toHex(bodyOf(*picture)), "00 00 00 00 62 00 61 00");
}

// What is held and never travels, no golden line can name.
TEST(MiscCommands, LeaveTheUserAtHome) {
  const auto check = [](auto command) {
    const Bytes body = bodyOf(*command);
    command->setUserID(7);
    EXPECT_EQ(bodyOf(*command), body);
    EXPECT_EQ(decode(*command, body), "");
    EXPECT_EQ(command->userID(), 0);
  };
  check(make<ClMiscCashierInfo>(3));
  check(make<ClMiscGetCreditCardInfo>(3));
  check(make<ClMiscChnagePassword>("old", "new"));
  check(make<ClMiscSetupAccount>("a", "b", kDay, UserAddress(), "c", "d"));
  check(make<ClRplGetHandHistory>(everyCriterion()));

  ReplayInfo replay = aReplay();
  EXPECT_EQ(decode(replay, encode(replay)), "");
  EXPECT_EQ(replay.handNumber(), 0u);
  EXPECT_EQ(replay.ended().GetStatus(), COleDateTime::null);
}

// What the golden lines, which name each field, cannot see.
TEST(AccountInits, PutLikeArgumentsInTheirOwnFields) {
  const auto password = make<ClMiscChnagePassword>("old", "new");
  EXPECT_EQ(password->oldPassword() + password->newPassword(), "oldnew");
  password->init(nullptr, nullptr);
  EXPECT_EQ(toHex(bodyOf(*password)), "00 00");
  EXPECT_EQ(fieldsToJson(*make<ClMiscSetupAccount>("a", "b", COleDateTime(1.5), UserAddress(), "c", "d")),
            R"({"firstName":"a","lastName":"b","birthDate":1.5,"address":{"address":"","city":"","state":"",)"
            R"("zipCode":"","country":"","phone":""},"securityQuestion":"c","securityAnswer":"***"})");
  EXPECT_EQ(fieldsToJson(*make<SrvSessionCreated>(SessionTarget::WebSite, "S1", "u", COleDateTime(1.5))),
            R"({"target":1,"sessionID":"***","url":"u","expires":1.5})");
  EXPECT_EQ(fieldsToJson(*make<SrvUserWonPromotion>("a", 5u, "b")), R"({"userName":"a","dealID":5,"handText":"b"})");
  EXPECT_EQ(fieldsToJson(*make<SrvPlayMoneyMessage>("m", cents(100), cents(200))),
            R"({"message":"m","increase":"1","playMoney":"2"})");
  EXPECT_EQ(fieldsToJson(*make<SrvPromoNotify>(SrvPromoNotify::Running, 3u, -4)),
            R"({"notifyID":2,"targetTables":3,"rest":-4})");
  EXPECT_EQ(fieldsToJson(*make<ClGetHandHistory>(true, 5u, false)),
            R"({"isGameData":true,"data":5,"isTourRequest":false})");
}

TEST(CashierStatus, MergesValuesUnderTheirKeys) {
  const auto status = make<SrvCashierStatus>();
  status->addData({{SrvCashierStatus::kBalance, "1"}, {"b", "2"}});
  status->addData({{"b", "3"}, {"a", "4"}});
  EXPECT_STREQ(status->value("b"), "3");
  EXPECT_STREQ(status->value(SrvCashierStatus::kBalance), "1");
  EXPECT_STREQ(status->value("none"), "");
  EXPECT_STREQ(status->value(nullptr), "");
  EXPECT_EQ(status->impl().size(), 3u);
}

}  // namespace
}  // namespace poker::test
