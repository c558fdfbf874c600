// Batches between two sessions, and what a client's session makes of batches that no session of ours would send.

#include <hostkit/Batch.h>
#include <zlib.h>
#include <asio/read.hpp>
#include <asio/write.hpp>

#include <map>
#include <random>
#include <string>
#include <vector>

#include <tests/support/AllocationCounter.h>
#include "Sessions.h"

namespace poker::test {
namespace {

/// A command that stays out of batches, for whatever reason of its class. Taken from no pool.
class Uncompressed final : public SrvUnknownValues {
 public:
  Uncompressed() : SrvUnknownValues(CommandType::SrvCashierStatus) {}
  bool canCompress() override { return false; }
};

class Batches : public SessionTest {
 protected:
  /// A client's session whose hands are shaken.
  std::shared_ptr<TcpSession> join(std::uint16_t port) {
    auto session = connect(port, client);
    session->setState(SessionState::ShakenHands);
    return session;
  }

  Record client;
};

TEST_F(Batches, CarryWhatALoggedOnClientIsSentInOneTurnOfTheLoop) {
  Record log;
  TcpServer server(context, {}, log);
  server.start();
  const auto receiver = join(server.port());
  ASSERT_TRUE(until([&] { return !server.sessions().empty(); }));
  const auto sender = onlySession(server);

  const std::string news(300, 'n');
  const auto notice = make<SrvMaintenance>(news, MaintainID{1});
  const auto sendMany = [&] {
    for (int i = 0; i < 20; ++i) sender->send(i % 4 == 0 ? static_cast<PokerCommandI&>(*make<SrvBusy>()) : *notice);
  };
  sender->setState(SessionState::ShakenHands);
  sendMany();  // it may not know yet that its hands are shaken
  ASSERT_TRUE(until([&] { return client.commands.size() == 20; }));
  EXPECT_EQ(sender->counters().batchesOut, 0u);
  sender->setState(SessionState::LoggedOn);
  sender->send(*notice);  // too little
  ASSERT_TRUE(until([&] { return client.commands.size() == 21; }));
  EXPECT_EQ(sender->counters().batchesOut, 0u);

  const std::uint64_t before = sender->counters().bytesOut;
  sendMany();
  sender->send(Uncompressed());
  sendMany();
  ASSERT_TRUE(until([&] { return client.commands.size() == 62; }));
  EXPECT_EQ(sender->counters().batchesOut, 2u) << "one before and one behind the command that stays as it is";
  EXPECT_EQ(receiver->counters().batchesIn, 2u);
  EXPECT_EQ(receiver->counters().framesIn, sender->counters().framesOut);
  EXPECT_LT(sender->counters().bytesOut - before, 400u) << "of more than 9,000";
  EXPECT_EQ(client.commands.at(41), "SrvCashierStatus");
  EXPECT_EQ(toHex(client.in), toHex(log.out)) << "neither host sees a batch";

  // What does not become smaller stays as it is.
  std::mt19937 random(1);
  std::string noise(2000, ' ');
  for (char& byte : noise) byte = static_cast<char>(random());
  sender->send(*make<SrvSendUserPic>("code", noise.data(), 2000u, "Ann"));
  ASSERT_TRUE(until([&] { return client.commands.size() == 63; }));
  EXPECT_EQ(sender->counters().batchesOut, 2u);
}

Bytes deflated(const Bytes& frames) {
  Bytes body(compressBound(static_cast<uLong>(frames.size())));
  auto size = static_cast<uLongf>(body.size());
  compress(body.data(), &size, frames.data(), static_cast<uLong>(frames.size()));
  body.resize(size);
  return body;
}

/// A batch as it travels, whatever its numbers say.
Bytes batch(std::uint32_t realSize, const Bytes& body) {
  const auto number = [](std::uint32_t value) {
    Bytes bytes;
    for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    return bytes;
  };
  const auto size = static_cast<std::uint32_t>(body.size());
  return number(14 + size) + Bytes{206, 1} + number(realSize) + number(size) + body;
}
Bytes batchOf(const Bytes& frames) { return batch(static_cast<std::uint32_t>(frames.size()), deflated(frames)); }

// In how many ways a batch may lie, its fuzz target says (fuzz/fuzz_batch.cpp).
TEST_F(Batches, ThatLieEndTheSessionAndNothingOfThemIsActedOn) {
  const Bytes good = frame<SrvKeepAliveReply>(7u) + frame<SrvBusy>();
  const auto size = static_cast<std::uint32_t>(good.size());
  Bytes badSum = deflated(good);
  badSum.back() ^= 1;
  const std::map<std::string, Bytes> lies = {
      {"a wrong check sum", batch(size, badSum)},
      {"a megabyte and a byte", batch(kLargestBatch + 1, deflated(Bytes(kLargestBatch + 1, 0)))},
      {"half of a frame", batchOf(Bytes(good.begin(), good.end() - 1))},
      {"a batch", batchOf(frame<SrvKeepAliveReply>(7u) + batchOf(frame<SrvBusy>()))},
  };
  for (const auto& [what, bytes] : lies) {
    SCOPED_TRACE(what);
    client = {};
    asio::ip::tcp::acceptor acceptor(context, {asio::ip::address_v4::loopback(), 0});
    const auto session = join(acceptor.local_endpoint().port());
    asio::ip::tcp::socket server = acceptor.accept();
    // One that is fine goes ahead.
    asio::write(server, asio::buffer(batchOf(good) + bytes + frame<SrvPing>(1)));
    const AllocationCounter counter;
    ASSERT_TRUE(until([&] { return !client.errors.empty(); }));
    EXPECT_LE(counter.peak(), 65'536u);
    EXPECT_EQ(client.commands, (std::vector<std::string>{"SrvKeepAliveReply", "SrvBusy"}));
    EXPECT_EQ(client.errors.at(0).kind, DecodeError::Kind::BadBatch) << client.errors.at(0).toString();
    server.close();
    ASSERT_TRUE(until([&] { return !client.closed.empty(); }));
    EXPECT_EQ(client.closed.begin()->second, CloseReason::BadCommand);
  }
}

// Of a sound batch each command is judged like any other, in its turn.
TEST_F(Batches, AreLeftWhenTheSessionEndsMidway) {
  asio::ip::tcp::acceptor acceptor(context, {asio::ip::address_v4::loopback(), 0});
  const auto session = join(acceptor.local_endpoint().port());
  asio::ip::tcp::socket server = acceptor.accept();
  asio::write(server, asio::buffer(batchOf(frame<SrvKeepAliveReply>(1u) + frame<ClBye>() + frame<SrvBusy>())));
  ASSERT_TRUE(until([&] { return !client.errors.empty(); }));
  EXPECT_EQ(client.errors.at(0).kind, DecodeError::Kind::WrongDirection);
  EXPECT_EQ(client.commands, std::vector<std::string>{"SrvKeepAliveReply"});
  EXPECT_TRUE(session->isClosing());
}

// Its memory goes from batch to batch, and nothing of one shows in the next.
TEST(Pack, MakesTheSameBytesAsZlibsSingleCall) {
  std::mt19937 random(4);
  for (const unsigned size : {0u, 1u, 700u, 40'000u, 3u, 300'000u, 40'000u, 0u, 12u}) {
    Bytes bytes(size);
    const unsigned kinds = size % 3 == 0 ? 256 : 4;  // that which gets smaller, and that which does not
    for (std::uint8_t& each : bytes) each = static_cast<std::uint8_t>(random() % kinds);
    Bytes expected(compressBound(size));
    uLongf length = expected.size();
    ASSERT_EQ(compress2(expected.data(), &length, bytes.data(), size, Z_DEFAULT_COMPRESSION), Z_OK);
    expected.resize(length);
    const auto batch = make<SrvCompressedCommands>(bytes.data(), size);
    ASSERT_EQ(batch->compressedSize(), expected.size());
    const Bytes frame = frameOf(*batch);
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), frame.end() - static_cast<std::ptrdiff_t>(length)));
  }
}

}  // namespace
}  // namespace poker::test
