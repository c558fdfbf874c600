#include <CommandProcessor/commands/session/SessionCommands.h>
#include <hostkit/CommandHandle.h>
#include <inspect/CommandText.h>
#include <tests/support/WireBytes.h>

#include <gtest/gtest.h>

#include <string>

namespace poker {
namespace {

using namespace CommonTypes;
using namespace test;

const std::string kLong = "a text that is much too long for the storage inside a string";
const HardwareInfo kMachine({"00-1B-44-11-3A-B7", kLong}, {"WD-1"}, "PC");

TEST(SrvLogonOkTest, PreviousSeatOutlivesCloneAndNotInit) {
  const auto command = make<SrvLogonOk>("x", nullptr, true, RealMoneyAcc(3), true);
  EXPECT_FALSE(command->prevSeatID().isValid());
  command->prevSeatID(7);
  const CommandHandle<> clone(*command->clone());
  command->init("x", nullptr, true, RealMoneyAcc(3), true);
  EXPECT_EQ(command->prevSeatID(), SeatID(100));
  EXPECT_EQ(dynamic_cast<SrvLogonOk&>(*clone).prevSeatID(), SeatID(7));
}

TEST(SrvLogonErrorTest, KeepsEveryTextByteForByte) {
  const std::string texts[] = {
      "",
      "Bad user code or password !",
      "Your account was banned. Please contact management staff.",
      "Your account was locked. Please contact management staff.",
      R"(There is already another account open from this computer. Only one account per user is allowed.
Please contact management staff.)",
      R"(The account you are trying to use is already logged in.
If this is not authorized, or for more information, please contact the HOST.
You may also call customer support at @>PHONE<@.)",
      R"(Please choose a screename that will be used
to identify you when you play, sit, or chat
at our tables and tournaments.)",
      "",
      R"(Your Log-In PIN has been changed so you can use all of our products with the same
PIN and Password. To find out more about our games and wagering services, please
visit our website. Your screenname for Poker will remain unchanged at the tables,
but you must use your new PIN to log-in from now on.
Your new PIN number is: 4711)",
  };
  for (int code = 0; code < 256; ++code) {
    const auto command = make<SrvLogonError>(static_cast<LogonRetCodes>(code), "4711");
    EXPECT_EQ(command->code(), code);
    EXPECT_EQ(command->getGUIMessage(), code < 9 ? texts[code] : "") << code;
  }
}

TEST(SrvRegistrationFailTest, KeepsEveryTextByteForByte) {
  const std::string other = "Account could not be created at this time.\nPlease try again later.";
  const std::string texts[] = {
      other,
      "An account from this computer could not be created \ndue to conflicting hardware values.",
      other,
      "An account with the chosen user name already exists!\nChoose another user name please.",
      "The specified referral does not exists!\n",
      R"(The country you have chosen is not allowed.
Please apply for an account from an alternative address.
Please contact support for more details.)",
  };
  for (int result = 0; result < 256; ++result) {
    const auto command = make<SrvRegistrationFail>(static_cast<unsigned char>(result));
    EXPECT_EQ(command->result(), result);
    EXPECT_EQ(command->errorMsg(), result < 6 ? texts[result] : other) << result;
  }
}

TEST(SrvPasswordErrorTest, KeepsEveryTextByteForByte) {
  for (int reason = 0; reason < 256; ++reason) {
    const auto command = make<SrvPasswordError>(static_cast<SrvPasswordError::ReasonID>(reason), false);
    EXPECT_STREQ(command->reasonToStr(),
                 reason == 1 ? "Sorry, your authorization password for this table is wrong." : "Wrong password !");
  }
}

TEST(ClLogonTest, OwnsTheAffiliateBytes) {
  char affiliate[] = {'a', 0, 'b'};
  const auto command = make<ClLogon>("u", "p", HardwareInfo(), affiliate, 3, false, false);
  affiliate[0] = 'z';
  ASSERT_EQ(command->getAffNumSize(), 3);
  EXPECT_EQ(std::string(command->getAffiliateNumber(), 3), std::string("a\0b", 3));
  // A size that cannot be, and no bytes at all, are no affiliate.
  for (const auto& [bytes, size] : {std::pair<const char*, int>{affiliate, -1}, {affiliate, INT32_MIN}, {nullptr, 3}}) {
    command->init(nullptr, nullptr, HardwareInfo(), bytes, size, true, false);
    EXPECT_EQ(bodyOf(*command), (Bytes{0, 0, 0, 0, 0, 0, 0, 1, 0}));
  }
}

TEST(HardwareInfoTest, IsOneByteOnlyWhenAllThreeAreEmpty) {
  EXPECT_EQ(encode(HardwareInfo()), Bytes{0});
  EXPECT_EQ(encode(HardwareInfo({""}, {}, "")).size(), 1 + 4 + 1 + 4 + 1u);
  EXPECT_EQ(encode(HardwareInfo({}, {""}, "")).size(), 1 + 4 + 4 + 1 + 1u);
  EXPECT_EQ(encode(HardwareInfo({}, {}, "m")).size(), 1 + 4 + 4 + 2u);
  HardwareInfo used = kMachine;
  EXPECT_EQ(decode(used, {0}), "");
  EXPECT_EQ(used, HardwareInfo());
}

// The commands differ from their init() in what comes first; the golden bytes know only the fields' names.
TEST(LogonInit, PutsEveryArgumentInItsPlace) {
  const auto ok = make<SrvRegistrationOk>(UserNameTaken, "ann");
  EXPECT_EQ(bodyOf(*ok), hex("61 6E 6E 00 03"));
  EXPECT_EQ(bodyOf(*make<SrvLogonOk>("", "", false, RealMoneyAcc(), true))[2], 0x04);
  EXPECT_EQ(bodyOf(*make<SrvLogonOk>("", "", true, RealMoneyAcc(), false))[2], 0x08);
  EXPECT_EQ(bodyOf(*make<SrvLogonChange>(true, false, RealMoneyAcc(), false))[0], 0x01);
  EXPECT_EQ(bodyOf(*make<SrvLogonChange>(false, true, RealMoneyAcc(), false))[0], 0x02);
  EXPECT_EQ(bodyOf(*make<SrvLogonChange>(false, false, RealMoneyAcc(), true))[0], 0x04);
  EXPECT_EQ(bodyOf(*make<SrvShowSignOnUser>(SeatID(4), SignOnUser::Disconnected, true)), hex("01 04 01"));
  EXPECT_EQ(bodyOf(*make<SrvPasswordError>(SrvPasswordError::ReasonID{5}, true)), hex("05 01"));
  EXPECT_EQ(bodyOf(*make<ClLogon>("a", "b", HardwareInfo({}, {}, "m"), "c", 1, false, true)),
            hex("61 00 62 00 01 00000000 00000000 6D 00 01000000 63 00 01"));
  EXPECT_EQ(bodyOf(*make<ClValidateEmail>("a", "b")), hex("61 00 62 00"));
  EXPECT_EQ(bodyOf(*make<SrvEmailValidated>(nullptr)), Bytes{0});

  char frID[] = {9};
  const auto name = make<ClMyNewScreenName>("a", "b", HardwareInfo({"c"}, {}, ""), "d", frID, 1);
  EXPECT_EQ(bodyOf(*name), hex("61 00 62 00 64 00 01000000 09 01 01000000 63 00 00000000 00"));
  name->init(nullptr, nullptr, HardwareInfo(), nullptr, nullptr, 5);
  EXPECT_EQ(bodyOf(*name), Bytes(3 + 4 + 1));
  name->init("", "", HardwareInfo(), "", frID, -1);
  EXPECT_EQ(bodyOf(*name), Bytes(3 + 4 + 1));

  RawDataHolder raw("\x5", 1);
  const auto account = make<ClMakeNewAccount>(NewAccountInfo(), raw, Int2StringSer{{1, "x"}});
  Bytes body(10 + 1 + 4 + 4 + 1);
  for (const int byte : {1, 1, 0, 0, 0, 0x78, 0, 1, 0, 0, 0, 5}) body.push_back(static_cast<std::uint8_t>(byte));
  EXPECT_EQ(bodyOf(*account), body);
  EXPECT_EQ(raw.size(), 1u) << "the caller's data is a copy's source";
}

TEST(UpdateHardwareInfoTest, StaysInMemory) {
  const auto command = make<UpdateHardwareInfo>(-7, kMachine, "10.0.0.1");
  EXPECT_EQ(encode(*command), (Bytes{113, 6}));
  const CommandHandle<> owner(*command->clone());
  const auto& clone = dynamic_cast<UpdateHardwareInfo&>(*owner);
  EXPECT_EQ(decode(*command, {}), "");
  EXPECT_EQ(command->userID(), 0);
  EXPECT_EQ(command->info(), HardwareInfo());
  EXPECT_EQ(command->ip(), "");
  EXPECT_EQ(clone.userID(), -7);
  EXPECT_EQ(clone.info(), kMachine);
  EXPECT_EQ(clone.ip(), "10.0.0.1");
}

}  // namespace
}  // namespace poker
