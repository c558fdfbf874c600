#include <gtest/gtest.h>
#include <hostkit/CommandFactory.h>
#include <hostkit/Decode.h>
#include <hostkit/SessionState.h>

#include <map>
#include <string>

#include "HostKitUse.h"

namespace poker::test {
namespace {

using Kind = DecodeError::Kind;

constexpr DecodePolicy kServer = DecodePolicy::of(Side::Server);
constexpr DecodePolicy kClient = DecodePolicy::of(Side::Client);

// Every pair on both sides, against the catalogue; the counts are those of the format.
TEST(Decode, AnswersEachOfThe65536PairsOnBothSides) {
  for (const DecodePolicy& policy : {kServer, kClient}) {
    std::map<Kind, int> seen;
    for (unsigned family = 0; family < 256; ++family) {
      for (unsigned code = 0; code < 256; ++code) {
        const Bytes pair = {static_cast<std::uint8_t>(code), static_cast<std::uint8_t>(family)};
        const auto rows = findCommands(static_cast<ProcessorFamily>(family), pair[0]);
        const DecodeResult result = decodeCommand(pair, policy);
        const Kind kind = result.error.kind;
        ++seen[kind];
        ASSERT_EQ(static_cast<bool>(result), kind == Kind::None);
        if (rows.empty()) {
          ASSERT_EQ(kind, Kind::UnknownPair) << family << ' ' << code;
        } else if (rows[0].direction != policy.receives) {
          ASSERT_EQ(kind, Kind::WrongDirection) << rows[0].name;
        } else if (family == 6 && code == 113) {
          ASSERT_EQ(kind, Kind::NotFromNetwork);
        } else {
          const CommandClass& expected = *CommandFactory::find(static_cast<ProcessorFamily>(family), pair[0]);
          ASSERT_EQ(kind == Kind::NotBuilt, expected.create == nullptr) << rows[0].name;
          ASSERT_TRUE(kind == Kind::NotBuilt || kind == Kind::Malformed || kind == Kind::None) << rows[0].name;
          ASSERT_EQ(result ? result.command->getTypeCode() : code, code);
          ASSERT_EQ(kind == Kind::None ? expected.name() : result.error.className, expected.name());
        }
        if (kind != Kind::None) {
          ASSERT_EQ(result.error.family, family);
          ASSERT_EQ(result.error.code, code);
          ASSERT_FALSE(result.error.message.empty());
        }
      }
    }
    const int toServer = 2 + 28 + 13 + 20;  // families 0, 2, 4 and 6; (6, 117) counts once
    const int toClient = 2 + 69 + 22;       // families 0, 1 and 3
    EXPECT_EQ(seen[Kind::UnknownPair], 65536 - toServer - toClient);
    EXPECT_EQ(seen[Kind::WrongDirection], policy.receives == CommandDirection::ClientToServer ? toClient : toServer);
    EXPECT_EQ(seen[Kind::NotFromNetwork], policy.receives == CommandDirection::ClientToServer ? 1 : 0);
  }
  // Of the two classes that share a pair, the network names one.
  const DecodeResult shared = decodeCommand(Bytes{117, 6}, kServer);
  EXPECT_EQ(CommandFactory::find(*shared.command)->name(), "ClMiscIncreasePlayMoney");
  EXPECT_EQ(decodeCommand({}, kServer).error.kind, Kind::NoFrame);
  EXPECT_EQ(decodeCommand(Bytes{128}, kServer).error.kind, Kind::NoFrame);
}

TEST(Decode, RejectsTrailingBytesFromAClientAndLetsAServerAppend) {
  for (const auto& [policy, sent] : {std::pair(kServer, frame<ClKeepAlive>(1u)), {kClient, frame<SrvBusy>()}}) {
    Bytes longer(sent.begin() + 4, sent.end());
    longer.push_back(0x55);
    const DecodeResult result = decodeCommand(longer, policy);
    EXPECT_EQ(static_cast<bool>(result), !policy.rejectTrailing);
    if (result) continue;
    EXPECT_EQ(result.error.kind, Kind::TrailingBytes);
    EXPECT_EQ(result.error.offset, longer.size() - 1);
    EXPECT_EQ(result.error.remaining, 1u);
  }
  EXPECT_TRUE(kServer.rejectTrailing);
  EXPECT_FALSE(kClient.rejectTrailing);
}

TEST(Decode, GivesTheObjectBackWhenReadingFails) {
  ASSERT_TRUE(decodeCommand(hex("80 02 01 00 00 00"), kServer));
  const std::uint32_t before = idle<ClKeepAlive>();
  for (int i = 0; i < 100; ++i) {
    EXPECT_FALSE(decodeCommand(Bytes{128, 2, 0}, kServer));
    EXPECT_FALSE(decodeCommand(Bytes{128, 2, 0, 0, 0, 0, 9}, kServer));
  }
  EXPECT_EQ(idle<ClKeepAlive>(), before);
  EXPECT_EQ(decodeCommand(Bytes{128, 2, 0}, kServer).error.toString(),
            "ClKeepAlive (2, 128): CommandBuf::readNumber - bufSize == 0, at 2, 1 left");
}

TEST(Decode, LeavesNoSecretInThePool) {
  CachedCmdCreator<ClSSLHandshakeData>::clearCache();
  ASSERT_TRUE(decodeCommand(hex("D0 02 05 00 00 00 01 02 03 04 05 02"), kServer));  // and released at once
  const CommandHandle<ClSSLHandshakeData> again = CommandHandle<ClSSLHandshakeData>::create();
  EXPECT_EQ(again->size(), 0u) << "was not wiped";
}

TEST(Encode, ReusesTheBufferWithoutARestOfTheLastCommand) {
  SerializeCommandBuf buffer(16);
  encodeCommand(*make<SrvMaintenance>(std::string(500, 'x'), MaintainID{1}), buffer);
  buffer.setMark();
  const auto frame = encodeCommand(*make<SrvKeepAliveReply>(0x04030201u), buffer);
  EXPECT_EQ(toHex({frame.begin(), frame.end()}), "0A 00 00 00 55 01 01 02 03 04");
  EXPECT_FALSE(buffer.mark());
}

TEST(AllowedCommands, DenyWhatTheStateDoesNotCallFor) {
  const AllowedCommands server = AllowedCommands::forServer();
  struct Case {
    const char* name;
    const char* states;  // one letter each: Connected, ShakenHands, LoggedOn, Seated
  };
  for (const Case& test :
       {Case{"ClHandShake", "C"}, Case{"ClBye", "CSLT"}, Case{"ClKeepAlive", "SLT"}, Case{"ClLogon", "S"},
        Case{"ClMakeNewAccount", "S"}, Case{"ClGetServerInfo", "LT"}, Case{"ClSitDown", "LT"},
        Case{"ClUserAction", "T"}, Case{"ClTourRegister", "LT"}, Case{"ClUpdateUserPic", "LT"},
        Case{"ClScriptSetDealer", ""}, Case{"UpdateHardwareInfo", ""}, Case{"SrvLogonOk", ""}}) {
    const CommandDescription& row = *findCommand(test.name);
    std::string states;
    for (const auto& [state, letter] : {std::pair{SessionState::Connected, 'C'},
                                        {SessionState::ShakenHands, 'S'},
                                        {SessionState::LoggedOn, 'L'},
                                        {SessionState::Seated, 'T'}}) {
      if (server.allows(state, row.family, row.code)) states += letter;
    }
    EXPECT_EQ(states, test.states) << test.name;
    EXPECT_FALSE(server.allows(SessionState::Closing, row.family, row.code));
  }
  const AllowedCommands client = AllowedCommands::forClient();
  EXPECT_TRUE(client.allows(SessionState::Connected, ProcessorFamily::Server, 92));
  EXPECT_FALSE(client.allows(SessionState::Connected, ProcessorFamily::Server, 47));
  EXPECT_TRUE(client.allows(SessionState::ShakenHands, ProcessorFamily::Server, 47));
  EXPECT_FALSE(client.allows(SessionState::Seated, ProcessorFamily::Client, 122));
  EXPECT_FALSE(client.allows(SessionState::Seated, static_cast<ProcessorFamily>(200), 1));

  AllowedCommands own = server;
  own.allow(SessionState::Seated, "ClScriptSetDealer");
  own.deny<ClBye>(SessionState::Connected);
  EXPECT_TRUE(own.allows(SessionState::Seated, ProcessorFamily::Client, 136));
  EXPECT_FALSE(own.allows(SessionState::Connected, ProcessorFamily::Connection, 204));
  EXPECT_THROW(own.allow(SessionState::Seated, "ClScriptSetDealr"), std::invalid_argument);
}

}  // namespace
}  // namespace poker::test
