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
    EXPECT_EQ(read.gameID(), info.has(ReplayRequestInfo::kGameID) ? 7u : 0u) << mask;
    EXPECT_EQ(read.from(), info.has(ReplayRequestInfo::kFrom) ? kDay : COleDateTime()) << mask;
    EXPECT_EQ(read.to().GetStatus(), info.has(ReplayRequestInfo::kTo) ? 2 : 0) << mask;
    EXPECT_EQ(read.mostHands(), info.has(ReplayRequestInfo::kMostHands) ? 20u : 0u) << mask;
    EXPECT_EQ(read.gameType(),
              GameType{info.has(ReplayRequestInfo::kGameType) ? std::uint16_t{0x0201} : std::uint16_t{}})
        << mask;
    EXPECT_EQ(read.opponent(), info.has(ReplayRequestInfo::kOpponent) ? "Bo" : "") << mask;
    EXPECT_EQ(read.replays().size(), info.has(ReplayRequestInfo::kReplays) ? 1u : 0u) << mask;
  }
}

TEST(ReplayRequest, SetsEachCriterionByItself) {
  ReplayRequestInfo info;
  EXPECT_EQ(toHex(encode(info)), "00 00 00 00 00");
  info.setTo(kDay);
  EXPECT_EQ(info.mask(), 0x10u);
  info.addReplay(aReplay());
  info.drop(ReplayRequestInfo::kReplays);
  info.addReplay(aReplay());
  EXPECT_EQ(info.replays().size(), 1u) << "one that was taken back is there again";
  EXPECT_EQ(info.mask(), 0x30u);
}

TEST(ReplayInfoTest, KeepsTheHandNumberAtHome) {
  const ReplayInfo replay = aReplay();
  EXPECT_EQ(replay.handNumber(), 99u);
  const Bytes bytes = encode(replay);
  EXPECT_EQ(bytes.size(), 24u);
  ReplayInfo read(5);
  EXPECT_EQ(decode(read, bytes), "");
  EXPECT_EQ(read.handNumber(), 0u);
  EXPECT_EQ(read.ended().GetStatus(), COleDateTime::null);
}

TEST(HandHistories, GrowOneByOneAndStartAnew) {
  const auto texts = make<SrvRplHandHistory>(StringVector{"old"});
  texts->init({});
  texts->add("a");
  texts->getGames().push_back("b");
  EXPECT_EQ(toHex(bodyOf(*texts)), "02 00 00 00 61 00 62 00");
  const auto numbers = make<SrvRplHandHistoryList>(std::vector<std::uint32_t>{9});
  numbers->init({});
  numbers->add(3);
  numbers->getGames().push_back(4);
  EXPECT_EQ(toHex(bodyOf(*numbers)), "02 00 00 00 03 00 00 00 04 00 00 00");
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

TEST(SrvPlayerProfileTest, IsValidOnceItHasAProfile) {
  const auto command = make<SrvPlayerProfile>();
  MemberProfileInfo info;
  info.memberID = 7;
  command->info(info);
  EXPECT_TRUE(command->valid());
  EXPECT_EQ(command->info().memberID, 7u);
  command->init();
  EXPECT_FALSE(command->valid());
  EXPECT_EQ(command->info().memberID, 0u);
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
}

// What the golden lines, which name each field, cannot see.
TEST(AccountInits, PutLikeArgumentsInTheirOwnFields) {
  const auto password = make<ClMiscChnagePassword>("old", "new");
  EXPECT_EQ(password->oldPassword(), "old");
  EXPECT_EQ(password->newPassword(), "new");
  password->init(nullptr, nullptr);
  EXPECT_EQ(toHex(bodyOf(*password)), "00 00");
  EXPECT_EQ(fieldsToJson(*make<ClMiscSetupAccount>("a", "b", COleDateTime(1.5), UserAddress(), "c", "d")),
            R"({"firstName":"a","lastName":"b","birthDate":1.5,"address":{"address":"","city":"","state":"",)"
            R"("zipCode":"","country":"","phone":""},"securityQuestion":"c","securityAnswer":"***"})");
  const auto session = make<SrvSessionCreated>(SessionTarget::WebSite, "S1", "u", COleDateTime(1.5));
  EXPECT_EQ(fieldsToJson(*session), R"({"target":1,"sessionID":"***","url":"u","expires":1.5})");
  EXPECT_EQ(session->sessionID() + session->url(), "S1u");
  const auto won = make<SrvUserWonPromotion>("a", 5u, "b");
  EXPECT_EQ(fieldsToJson(*won), R"({"userName":"a","dealID":5,"handText":"b"})");
  EXPECT_EQ(won->userName() + won->handText(), "ab");
  const auto playMoney = make<SrvPlayMoneyMessage>("m", cents(100), cents(200));
  EXPECT_EQ(fieldsToJson(*playMoney), R"({"message":"m","increase":"1","playMoney":"2"})");
  EXPECT_EQ(playMoney->increase(), cents(100));
  EXPECT_EQ(fieldsToJson(*make<SrvPromoNotify>(SrvPromoNotify::Running, 3u, -4)),
            R"({"notifyID":2,"targetTables":3,"rest":-4})");
  const auto hands = make<ClGetHandHistory>(true, 5u, false);
  EXPECT_EQ(fieldsToJson(*hands), R"({"isGameData":true,"data":5,"isTourRequest":false})");
  EXPECT_TRUE(hands->isGameData() && !hands->isTourRequiest());
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

  // The base can be sent as it is, under any type code.
  SrvUnknownValues values(CommandType::SrvStringMapCommand);
  values.addData({{"k", "v"}});
  EXPECT_EQ(toHex(encode(values)), "45 01 01 6B 00 76 00");
}

TEST(SrvHighHandInfoTest, LeavesNothingOfALongerListsHands) {
  PromoHighHandInfo promotion;
  promotion.hands.resize(2);
  const auto command = make<SrvHighHandInfo>(std::vector<PromoHighHandInfo>{promotion, promotion});
  command->init({PromoHighHandInfo()});
  ASSERT_EQ(command->getPromotions().size(), 1u);
  EXPECT_TRUE(command->getPromotions()[0].hands.empty());
}

}  // namespace
}  // namespace poker::test
