#include <CommandProcessor/commands/AllCommands.h>
#include <hostkit/CommandHandle.h>
#include <tests/support/WireBytes.h>

#include <gtest/gtest.h>

#include <ctime>
#include <iterator>
#include <string>

namespace poker::test {
namespace {

/// Also tells where the reading ended, in a body that need not be used up.
std::string decode(PokerCommandI& command, const Bytes& body, std::uint32_t& position) {
  DeserializeCommandBuf in(body.data(), static_cast<std::uint32_t>(body.size()));
  const std::string message = messageOf([&] { command.deserialize(in); });
  position = in.position();
  return message;
}

TEST(ClHandShakeTest, StopsAtThePaddingThatIsCut) {
  const auto command = make<ClHandShake>();
  const std::uint32_t stops[] = {0, 0, 0, 0, 0, 5, 5, 7, 8, 8, 8, 8, 12};
  for (std::size_t size = 0; size < std::size(stops); ++size) {
    std::uint32_t position = 99;
    EXPECT_EQ(decode(*command, Bytes(size), position), kNumberFails) << size;
    EXPECT_EQ(position, stops[size]) << size;
  }
}

TEST(ClPingTest, KeepsTheLowByteOfTheSecondValue) {
  const auto ping = make<ClPing>(std::uint8_t{3}, 0x1FFu);
  EXPECT_EQ(ping->info().first(), 3);
  EXPECT_EQ(ping->info().second(), 0xFF);
}

TEST(SrvPingTest, RecordsTheSecondsModulo256WhenItIsSent) {
  const auto low32 = [](std::time_t time) { return static_cast<std::int32_t>(static_cast<std::uint32_t>(time)); };
  const std::time_t now = std::time(nullptr);
  // The extreme ones are as far from now as a clock that has outgrown 32 bits is from any start time.
  for (const std::int32_t start :
       {low32(now), low32(now - 255), low32(now - 300), low32(now + 2), 0, -1, INT32_MIN, INT32_MAX}) {
    const auto ping = make<SrvPing>(start);
    EXPECT_EQ(ping->inServer(), 0);
    const std::time_t before = std::time(nullptr);
    const Bytes bytes = encode(*ping);
    const std::time_t after = std::time(nullptr);
    ASSERT_EQ(bytes.size(), 3u);
    EXPECT_EQ(ping->inServer(), bytes[2]);
    bool right = false;
    for (std::time_t time = before; time <= after; ++time) right |= ((time - start) & 0xFF) == bytes[2];
    EXPECT_TRUE(right) << "start " << start << ", now " << now << ", sent " << int{bytes[2]};
  }
}

TEST(SrvErrorDisconnectedTest, KeepsEveryTextByteForByte) {
  struct Row {
    std::uint32_t code;
    const char* name;
    const char* visual;
  };
  constexpr char kJoke[] = "Niakoi pak e zabravil da napishe neshto ;))";
  const Row rows[] = {
      {0, "SrvErr_BadReplay", "Internal communication error. BadReplay"},
      {1, "SrvErr_BadGameID", "This table has been removed.\nGo to Lobby and choose another table."},
      {2, "SrvErr_BadCommand", "Internal communication error. BadCommand"},
      {3, "SrvErr_InternalError", "Server internal error."},
      {4, "SrvErr_DisconnectConn", "Error - Connection Closed Forcedly from Server"},
      {5, "SrvErr_Banned",
       R"(Your account have been disabled from the administration.
Please contact the support for more details.)"},
      {6, "SrvErr_Reconnect", "Internal error."},
      {7, kJoke, "Internal error."},
      {0x80000000u, kJoke, "Internal error."},
      {0xFFFFFFFFu, kJoke, "Internal error."},
  };
  for (const Row& row : rows) {
    const auto command = make<SrvErrorDisconnected>(SrvErrorDisconnected::ErrorCode{row.code});
    EXPECT_STREQ(command->errCodeToString(), row.name);
    EXPECT_STREQ(command->errCodeToVisualString(), row.visual);
  }
}

TEST(SrvNewClientVersionAvailTest, ShowsTheTextsThatTypeAndStyleAskFor) {
  const std::string forced = R"(In our continuous efforts to provide you with the best
online poker experience we have upgraded our software.
You are now running an old version.  You must close the
client and reopen it in order to get the update.
If you continue running this version you may experience problems.
If you do not upgrade manually the client will be forced
to close in five minutes.  Sorry for an inconvenience.
For more information about the new version feel free to contact the HOST.)";
  const std::string optional = R"(In our continuous efforts to provide you with the best online poker
experience we have upgraded our software.  You are now running an old version.
You can close the client and reopen it in order to get the update.
If you continue running this version you may experience problems.
For more information about the new version feel free to contact the HOST.)";

  const auto shown = [](std::uint8_t type, std::uint8_t style, const char* text) {
    return make<SrvNewClientVersionAvail>(SrvNewClientVersionAvail::VersionType{type},
                                          SrvNewClientVersionAvail::ShowStyle{style}, text)
        ->getMessage();
  };
  EXPECT_EQ(shown(0, 0, "own"), "own");
  EXPECT_EQ(shown(0, 1, "own"), forced);
  EXPECT_EQ(shown(0, 2, "own"), forced + "\n\rown");
  EXPECT_EQ(shown(0, 2, ""), forced + "\n\r");
  EXPECT_EQ(shown(0, 3, "own"), "");
  EXPECT_EQ(shown(1, 1, "own"), optional);
  EXPECT_EQ(shown(1, 2, nullptr), optional + "\n\r");
  EXPECT_EQ(shown(1, 255, "own"), "");
  EXPECT_EQ(shown(2, 0, "own"), "own");
  EXPECT_EQ(shown(2, 1, "own"), "");
  EXPECT_EQ(shown(255, 2, "own"), "\n\rown");
}

template <class T>
class SecureChannel : public testing::Test {};
using SecureChannelCommands = testing::Types<ClSSLHandshakeData, SrvSSLHandshakeData>;
TYPED_TEST_SUITE(SecureChannel, SecureChannelCommands);

TYPED_TEST(SecureChannel, CarriesRecordsOfEverySizeOneAfterTheOther) {
  const auto command = make<TypeParam>();
  const auto other = make<TypeParam>();
  for (const std::uint32_t size : {300u, 1u, 70000u, 0u, 10u}) {
    Bytes data(size);
    for (std::size_t i = 0; i < size; ++i) data[i] = static_cast<std::uint8_t>(i * 7);
    command->init(data.data(), size, SSLDataType{9});
    const Bytes expected = data;
    data.assign(size, 0xEE);  // the command has a copy

    const Bytes body = bodyOf(*command);
    ASSERT_EQ(body.size(), 4 + size + 1);
    EXPECT_EQ(body[0] | body[1] << 8 | body[2] << 16 | body[3] << 24, static_cast<int>(size));
    EXPECT_EQ(test::decode(*other, body), "");
    EXPECT_EQ(Bytes(other->data(), other->data() + other->size()), expected);
    EXPECT_EQ(other->sslDataType(), SSLDataType{9});
  }
  command->init(nullptr, 5, SSLDataType{2});
  EXPECT_EQ(bodyOf(*command), (Bytes{0, 0, 0, 0, 2}));
}

}  // namespace
}  // namespace poker::test
