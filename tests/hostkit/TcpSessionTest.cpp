#include <CommandProcessor/core/ClientCmdProcessor.h>
#include <CommandProcessor/core/CmdDispatcher.h>
#include <CommandProcessor/core/SrvCmdProcessor.h>
#include <hostkit/Results.h>
#include <asio/read.hpp>
#include <asio/write.hpp>

#include <algorithm>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <tests/support/AllocationCounter.h>
#include "Sessions.h"

namespace poker::test {
namespace {

const Bytes kHandShake = frame<ClHandShake>(1u);
const Bytes kBadCommand = hex("0D 00 00 00 C9 00 00 00 00 02 00 00 00");
const Bytes kDisconnected = hex("0D 00 00 00 C9 00 00 00 00 04 00 00 00");

/// A server's host: shakes hands, answers keep-alives through dispatcher and results, and does what a test asks for.
struct Server final : Record, ClientCmdProcessor {
  using ClientCmdProcessor::Results;

  explicit Server(asio::io_context& context, ServerOptions options = {}) : tcp(context, std::move(options), *this) {
    dispatcher.registerClientCmdProcessor(*this);
    tcp.start();
  }
  bool recording = true;
  std::function<void(TcpSession&, PokerCommandI&)> also;
  CmdDispatcher dispatcher;
  Results results;
  SerializeCommandBuf buffer{64};
  TcpServer tcp;

  void onCommand(TcpSession& session, CommandHandle<> command) override {
    EXPECT_EQ(command->connections().size(), 1u);
    EXPECT_EQ(command->getConnID(), session.id());
    dispatcher.dispatchCommand(*command);
    if (also) also(session, *command);
    if (recording) Record::onCommand(session, std::move(command));
  }
  void onBytes(const TcpSession& session, FrameDirection direction, std::span<const std::uint8_t> bytes) override {
    if (recording) Record::onBytes(session, direction, bytes);
  }
  bool processCommand(PokerCommandTmpl<ClientCmdProcessorType>& command) override {
    ResultsGuard guard(results);
    command.process(results, *this);
    guard.send(
        buffer,
        [&](const EncodedCommand& reply, const ConnectionID& to) {
          if (TcpSession* session = tcp.find(to)) session->sendFrame(reply.frame);
        },
        [](const EncodedCommand&) { ADD_FAILURE() << "an answer without an address"; });
    return true;
  }
  void onClHandShake(Results& out_, ClHandShake& request) override {
    tcp.find(request.getConnID())->setState(SessionState::ShakenHands);
    addReply(out_, request, make<SrvHandShaked>());
  }
};

/// A client that is nothing but a socket, to do what no session of ours would do.
struct RawPeer {
  RawPeer(asio::io_context& context, const Server& server) : socket(context) {
    socket.connect({asio::ip::address_v4::loopback(), server.tcp.port()});
    socket.non_blocking(true);
  }
  void send(const Bytes& sent) { asio::write(socket, asio::buffer(sent)); }
  /// Takes what has come; afterwards `end` says whether and how the stream ended.
  const Bytes& received() {
    std::uint8_t part[4096];
    while (!end) {
      std::error_code failure;
      const std::size_t got = socket.read_some(asio::buffer(part), failure);
      if (failure == asio::error::would_block) break;
      if (failure) end = failure;
      bytes.insert(bytes.end(), part, part + got);
    }
    return bytes;
  }
  bool endedCleanly() {
    received();
    return end == asio::error::eof;
  }

  asio::ip::tcp::socket socket;
  Bytes bytes;
  std::optional<std::error_code> end;
};

class Tcp : public SessionTest {
 protected:
  static ServerOptions with(const SessionLimits& limits) {
    ServerOptions options;
    options.session.limits = limits;
    return options;
  }
};

TEST_F(Tcp, ConversationRunsFromHandShakeToByeOnBothSides) {
  Server server(context);
  server.also = [](TcpSession& session, PokerCommandI& command) {
    if (dynamic_cast<ClBye*>(&command) != nullptr) session.close();
  };
  Record client;
  const auto session = connect(server.tcp.port(), client);
  session->send(*make<ClHandShake>(7u));  // queued until the connection stands
  ASSERT_TRUE(until([&] { return client.commands.size() == 1; }));
  session->setState(SessionState::ShakenHands);
  session->send(*make<ClKeepAlive>(1u));
  ASSERT_TRUE(until([&] { return client.commands.size() == 2; }));
  session->closeAfter(*make<ClBye>());
  EXPECT_FALSE(session->send(*make<ClKeepAlive>(2u)));
  ASSERT_TRUE(until([&] { return !client.closed.empty() && server.closed.size() == 1; }));
  EXPECT_EQ(client.commands, (std::vector<std::string>{"SrvHandShaked", "SrvKeepAliveReply"}));
  EXPECT_EQ(server.commands, (std::vector<std::string>{"ClHandShake", "ClKeepAlive", "ClBye"}));
  EXPECT_EQ(client.closed.begin()->second, CloseReason::ByHost);
  EXPECT_EQ(client.opened, 1u);
  EXPECT_EQ(client.out, server.in);
  EXPECT_EQ(server.out, client.in);
  EXPECT_EQ(session->counters().framesOut, 3u);
  EXPECT_EQ(session->counters().framesIn, 2u);
  EXPECT_EQ(session->counters().bytesIn, client.in.size());
  EXPECT_EQ(session->counters().bytesOut, client.out.size());
  EXPECT_TRUE(server.tcp.sessions().empty());
}

TEST_F(Tcp, AnOffenderIsCutOffWithBadCommandWhileTheOthersGoOn) {
  const std::map<std::string, std::pair<Bytes, DecodeError::Kind>> garbage = {
      {"length 5", {hex("05 00 00 00 80 02"), DecodeError::Kind::LengthBelowMinimum}},
      {"huge length", {hex("FF FF FF FF"), DecodeError::Kind::LengthAboveLimit}},
      {"text", {Bytes{'G', 'E', 'T', ' ', '/', ' ', 'H'}, DecodeError::Kind::LengthAboveLimit}},
      {"unknown pair", {hex("06 00 00 00 01 02"), DecodeError::Kind::UnknownPair}},
      {"a server's command", {frame<SrvBusy>(), DecodeError::Kind::WrongDirection}},
      {"never from the network", {hex("06 00 00 00 71 06"), DecodeError::Kind::NotFromNetwork}},
      {"not in this state", {frame<ClKeepAlive>(1u), DecodeError::Kind::NotAllowed}},
      {"short fields", {hex("08 00 00 00 CB 00 00 00"), DecodeError::Kind::Malformed}},
      {"trailing bytes", {hex("0A 00 00 00 CC 00 00 00 00 00"), DecodeError::Kind::TrailingBytes}},
  };
  Server server(context);
  RawPeer good(context, server);
  good.send(kHandShake);
  std::size_t keepAlives = 0;
  for (const auto& [what, offence] : garbage) {
    RawPeer bad(context, server);
    // With more behind it that nobody reads: the last command must arrive all the same, not a reset.
    bad.send(offence.first + Bytes(3000, 0xEE));
    ASSERT_TRUE(until([&] { return bad.endedCleanly(); })) << what << (bad.end ? bad.end->message() : "");
    EXPECT_EQ(toHex(bad.bytes), toHex(kBadCommand)) << what;
    ASSERT_EQ(server.errors.size(), 1u) << what;
    EXPECT_EQ(server.errors[0].kind, offence.second) << what << ": " << server.errors[0].toString();
    server.errors.clear();
    good.send(frame<ClKeepAlive>(static_cast<std::uint32_t>(++keepAlives)));
    bad.socket.close();
    ASSERT_TRUE(until([&] { return good.received().size() == 6 + 10 * keepAlives; })) << what;
    ASSERT_TRUE(until([&] { return server.tcp.sessions().size() == 1; })) << what;
  }
  for (const auto& [id, reason] : server.closed) {
    EXPECT_TRUE(reason == CloseReason::BadCommand || reason == CloseReason::BadFrame) << id;
  }
  EXPECT_FALSE(good.endedCleanly());
}

TEST_F(Tcp, EachDeadlineEndsTheSessionThatMissesIt) {
  const auto reasonOf = [&](auto&& shorten, SessionState state, const Bytes& bytes) {
    SessionLimits limits;
    shorten(limits);
    Server server(context, with(limits));
    RawPeer peer(context, server);
    const auto start = Clock::now();
    EXPECT_TRUE(until([&] { return server.opened == 1; }));
    onlySession(server.tcp)->setState(state);
    peer.send(bytes);
    EXPECT_TRUE(until([&] { return peer.endedCleanly(); }));
    EXPECT_GE(Clock::now() - start, 40ms);
    EXPECT_EQ(toHex(peer.bytes), toHex(kDisconnected));
    peer.socket.close();
    EXPECT_TRUE(until([&] { return !server.closed.empty(); }));
    return server.closed.begin()->second;
  };
  using S = SessionState;
  EXPECT_EQ(reasonOf([](auto& limits) { limits.handShake = 40ms; }, S::Connected, {}), CloseReason::HandShakeTimeout);
  EXPECT_EQ(reasonOf([](auto& limits) { limits.logon = 40ms; }, S::ShakenHands, {}), CloseReason::LogonTimeout);
  EXPECT_EQ(reasonOf([](auto& limits) { limits.wholeFrame = 40ms; }, S::LoggedOn, hex("0A 00 00 00 80")),
            CloseReason::FrameTimeout);
  EXPECT_EQ(reasonOf([](auto& limits) { limits.keepAlive = 20ms; }, S::LoggedOn, {}), CloseReason::Idle);

  // A peer that takes its last command and never ends its own stream does not hold the session open, nor keep the loop
  // busy with deadlines that mean nothing any more.
  SessionLimits limits;
  limits.wholeFrame = limits.keepAlive = 1ms;
  limits.lastWords = 60ms;
  Server strict(context, with(limits));
  RawPeer peer(context, strict);
  peer.send(hex("05 00 00 00 80 02 00"));
  std::size_t turns = 0;
  ASSERT_TRUE(until([&] { return ++turns > 1000 || !strict.closed.empty(); }));
  EXPECT_LE(turns, 100u);
  EXPECT_TRUE(until([&] { return strict.tcp.sessions().empty(); }));
}

TEST_F(Tcp, APeerThatTricklesItsFramesIsNotMistakenForOneThatStopped) {
  SessionLimits limits;
  limits.wholeFrame = 300ms;
  Server server(context, with(limits));
  RawPeer peer(context, server);
  Bytes stream = kHandShake;
  for (std::uint32_t i = 0; i < 40; ++i) stream = stream + frame<ClKeepAlive>(i);
  for (std::size_t sent = 0; sent < stream.size(); sent += 7) {  // at nearly every pause some frame has begun
    const auto place = stream.begin() + static_cast<std::ptrdiff_t>(sent);
    peer.send({place, place + static_cast<std::ptrdiff_t>(std::min<std::size_t>(7, stream.size() - sent))});
    context.restart();
    context.run_for(8ms);
  }
  ASSERT_TRUE(until([&] { return peer.received().size() == 6 + 40 * 10; }));
  EXPECT_TRUE(server.closed.empty());
}

TEST_F(Tcp, ASlowReaderIsCutAtTheHardLimitOrAfterTheSoftTime) {
  for (const bool hard : {true, false}) {
    SessionLimits limits;
    limits.outputSoftTime = hard ? 60s : 50ms;
    if (!hard) limits.outputHard = 512 * 1024 * 1024;
    Server server(context, with(limits));
    RawPeer peer(context, server);
    peer.send(kHandShake);
    ASSERT_TRUE(until([&] { return server.commands.size() == 1; }));
    const auto slow = onlySession(server.tcp);
    RawPeer other(context, server);
    const Bytes notice = frame<SrvMaintenance>(std::string(32000, 'x'), MaintainID{1});
    std::size_t most = 0;
    for (int i = 0; i < 2000 && slow->sendFrame(notice) && (hard || slow->queuedBytes() <= limits.outputSoft); ++i) {
      most = std::max(most, slow->queuedBytes());
      context.restart();
      context.poll();
    }
    ASSERT_TRUE(until([&] { return server.closed.contains(slow->id().value()); }));
    EXPECT_EQ(server.closed[slow->id().value()], hard ? CloseReason::OutputOverflow : CloseReason::OutputStalled);
    EXPECT_LE(most, hard ? limits.outputHard + notice.size() : limits.outputSoft);
    EXPECT_FALSE(slow->sendFrame(notice));
    EXPECT_LT(slow->counters().bytesOut, 1024u * 1024) << "nor does the system hold megabytes for it";
    other.send(kHandShake);
    EXPECT_TRUE(until([&] { return other.received().size() == 6; })) << "the others go on";
  }
}

// As long as a client's limits let a frame be, of bytes that no batch makes smaller, among others.
TEST_F(Tcp, OneFrameMayBeLongerThanTheHardLimitAndASecondOneMayNot) {
  Server server(context);
  Record client;
  const auto session = connect(server.tcp.port(), client);
  session->send(*make<ClHandShake>(7u));
  ASSERT_TRUE(until([&] { return client.commands.size() == 1; }));
  session->setState(SessionState::LoggedOn);
  const auto sender = onlySession(server.tcp);
  sender->setState(SessionState::LoggedOn);

  const Bytes one = frame<SrvMaintenance>("x", MaintainID{1});
  std::string noise(65'000, '\0');
  std::uint32_t random = 1;
  for (char& c : noise) c = static_cast<char>((random = random * 1664525u + 1013904223u) >> 24 | 1);
  const auto news = make<SrvNews>();
  for (int text = 0; frameOf(*news).size() + noise.size() + 20 < session->limits().frames.afterLogon; ++text) {
    news->addMsg(text, noise.c_str());
  }
  const Bytes longest = frameOf(*news);
  ASSERT_GT(longest.size(), sender->limits().outputHard);
  ASSERT_TRUE(sender->sendFrame(one));
  ASSERT_TRUE(sender->sendFrame(longest));
  ASSERT_TRUE(sender->sendFrame(one));
  ASSERT_TRUE(until([&] { return client.commands.size() == 4; }));
  EXPECT_TRUE(server.closed.empty());

  // What went through before leaves no room behind.
  ASSERT_TRUE(until([&] { return sender->queuedBytes() == 0; }));
  const Bytes half = frame<SrvMaintenance>(std::string(60'000, 'x'), MaintainID{1});
  std::size_t sent = 0;
  while (sender->sendFrame(half, false)) sent += half.size();
  EXPECT_LE(sent, sender->limits().outputHard + half.size());
  ASSERT_TRUE(until([&] { return !server.closed.empty(); }));
  EXPECT_EQ(server.closed.begin()->second, CloseReason::OutputOverflow);
}

TEST_F(Tcp, APeerAboveItsRateIsSlowedDownOrCutOff) {
  Bytes flood = kHandShake;
  for (std::uint32_t i = 1; i < 40; ++i) flood = flood + frame<ClKeepAlive>(i);
  SessionLimits limits;
  limits.rate = {.framesPerSecond = 200, .burst = 10, .cut = false};
  {
    Server server(context, with(limits));
    RawPeer peer(context, server);
    const auto start = Clock::now();
    peer.send(flood);
    ASSERT_TRUE(until([&] { return peer.received().size() == 6 + 39 * 10; }));
    EXPECT_GE(Clock::now() - start, 140ms);  // 30 frames at 200 a second
    EXPECT_TRUE(server.closed.empty());
  }
  limits.rate.framesPerSecond = 0.001;
  limits.rate.cut = true;
  // What a keep-alive costs; the last one may cost more than is left.
  for (const std::uint8_t cost : {std::uint8_t{1}, std::uint8_t{4}}) {
    ServerOptions options = with(limits);
    options.session.costs.set<ClKeepAlive>(cost);
    const std::size_t taken = cost == 1 ? 9 : 3;
    Server server(context, options);
    RawPeer peer(context, server);
    peer.send(flood);
    ASSERT_TRUE(until([&] { return peer.endedCleanly(); }));
    EXPECT_EQ(server.commands.size(), 1 + taken);
    EXPECT_EQ(peer.bytes.size(), 6 + taken * 10 + kDisconnected.size());
    peer.socket.close();
    ASSERT_TRUE(until([&] { return !server.closed.empty(); }));
    EXPECT_EQ(server.closed.begin()->second, CloseReason::RateLimit);
  }
}

TEST_F(Tcp, DrainEndsEverySessionWithItsQueueAndTheReason) {
  Server server(context);
  std::vector<std::unique_ptr<RawPeer>> peers;
  for (int i = 0; i < 3; ++i) {
    peers.push_back(std::make_unique<RawPeer>(context, server));
    peers.back()->send(kHandShake);
  }
  ASSERT_TRUE(until([&] { return server.commands.size() == 3; }));
  const std::string text(30000, 'm');
  server.tcp.sendToAll(*make<SrvMaintenance>(text, MaintainID{1}));
  bool drained = false;
  server.tcp.drain(SrvErrorDisconnected::Reconnect, [&] { drained = true; });
  EXPECT_FALSE(drained);
  for (const auto& peer : peers) {
    ASSERT_TRUE(until([&] { return peer->endedCleanly(); }));
    EXPECT_EQ(toHex(peer->bytes), toHex(frame<SrvHandShaked>() + frame<SrvMaintenance>(text, MaintainID{1}) +
                                        frame<SrvErrorDisconnected>(SrvErrorDisconnected::Reconnect)));
    peer->socket.close();
  }
  ASSERT_TRUE(until([&] { return drained; }));
  EXPECT_TRUE(server.tcp.sessions().empty());
  EXPECT_EQ(server.closed.size(), 3u);
  Record late;
  const auto session = connect(server.tcp.port(), late);
  ASSERT_TRUE(until([&] { return !late.closed.empty(); }));
  EXPECT_EQ(late.closed.begin()->second, CloseReason::ConnectFailed);
  EXPECT_EQ(late.opened, 0u);
}

TEST_F(Tcp, AHandlerThatThrowsCostsItsOwnSessionOnly) {
  Server server(context);
  server.also = [](TcpSession&, PokerCommandI& command) {
    if (auto* keepAlive = dynamic_cast<ClKeepAlive*>(&command)) {
      if (keepAlive->sequenceNumber() == 13) throw std::runtime_error("handler failed");
    }
  };
  RawPeer good(context, server);
  RawPeer bad(context, server);
  good.send(kHandShake + frame<ClKeepAlive>(1u));
  bad.send(kHandShake + frame<ClKeepAlive>(13u) + frame<ClKeepAlive>(14u));
  ASSERT_TRUE(until([&] { return bad.endedCleanly(); }));
  EXPECT_EQ(toHex(bad.bytes), toHex(frame<SrvHandShaked>() + frame<SrvKeepAliveReply>(13u) +
                                    frame<SrvErrorDisconnected>(SrvErrorDisconnected::InternalError)));
  EXPECT_EQ(server.handlersFailed, 1u);
  good.send(frame<ClKeepAlive>(2u));
  EXPECT_TRUE(until([&] { return good.received().size() == 6 + 2 * 10; }));
}

TEST_F(Tcp, HalfOpenAndResetPeersEndAsWhatTheyAre) {
  Server server(context);
  RawPeer halfOpen(context, server);
  halfOpen.send(kHandShake);
  halfOpen.socket.shutdown(asio::socket_base::shutdown_send);
  ASSERT_TRUE(until([&] { return halfOpen.endedCleanly(); }));
  EXPECT_EQ(halfOpen.bytes, frame<SrvHandShaked>()) << "the answer still goes out";
  ASSERT_TRUE(until([&] { return server.closed.size() == 1; }));
  EXPECT_EQ(server.closed.rbegin()->second, CloseReason::ByPeer);

  RawPeer reset(context, server);
  reset.send(kHandShake);
  ASSERT_TRUE(until([&] { return reset.received().size() == 6; }));
  reset.socket.set_option(asio::socket_base::linger(true, 0));
  reset.socket.close();
  ASSERT_TRUE(until([&] { return server.closed.size() == 2; }));
  EXPECT_EQ(server.closed.rbegin()->second, CloseReason::ConnectionLost);
}

// The seat may have been lost while the player's action was on its way.
TEST_F(Tcp, AnActionThatComesTooLateIsDroppedAndTheSessionGoesOn) {
  ServerOptions options;
  options.session.allowed.deny<ClPing>(SessionState::LoggedOn);  // as if only seated players pinged
  Server server(context, std::move(options));
  server.also = [](TcpSession& session, PokerCommandI&) { session.setState(SessionState::LoggedOn); };
  RawPeer peer(context, server);
  peer.send(kHandShake + frame<ClPing>() + frame<ClKeepAlive>(1u));
  ASSERT_TRUE(until([&] { return peer.received().size() == 6 + 10; }));
  EXPECT_TRUE(server.errors.empty());
  EXPECT_EQ(server.refused, std::vector<std::string>{"ClPing"});
  // But a second hand-shake is no late comer.
  peer.send(kHandShake);
  ASSERT_TRUE(until([&] { return peer.endedCleanly(); }));
  EXPECT_EQ(server.errors.at(0).kind, DecodeError::Kind::NotAllowed);
}

// As while another thread hashes a password: order, deadlines and memory are as if the answer had been quick.
TEST_F(Tcp, WhatComesWhileASessionIsHeldWaitsInItsOrderAndCostsThePeerNoTime) {
  SessionLimits limits;
  limits.logon = limits.wholeFrame = 150ms;
  limits.keepAlive = 60ms;
  limits.rate.framesPerSecond = 0;
  Server server(context, with(limits));
  std::shared_ptr<TcpSession> held;
  server.also = [&](TcpSession& session, PokerCommandI& command) {
    if (dynamic_cast<ClPing*>(&command) == nullptr) return;
    session.hold();
    held = session.shared_from_this();
  };
  RawPeer peer(context, server);
  Bytes stream = kHandShake + frame<ClPing>() + frame<ClKeepAlive>(1u);
  const Bytes cut = frame<ClKeepAlive>(2u);
  peer.send(stream + Bytes(cut.begin(), cut.begin() + 4));
  ASSERT_TRUE(until([&] { return held != nullptr; }));
  const auto end = Clock::now() + 400ms;  // beyond every deadline of the peer's
  ASSERT_TRUE(until([&] { return Clock::now() > end; }));
  EXPECT_TRUE(held->isHeld());
  EXPECT_EQ(server.commands, (std::vector<std::string>{"ClHandShake", "ClPing"}));
  EXPECT_TRUE(server.closed.empty());
  // What is sent goes out all the same.
  held->send(*make<SrvPing>(0));
  ASSERT_TRUE(until([&] { return peer.received().size() == 6 + frame<SrvPing>(0).size(); }));

  held->proceed();
  EXPECT_EQ(server.commands.size(), 2u) << "from inside of a call of the host's";
  peer.send(Bytes(cut.begin() + 4, cut.end()));
  ASSERT_TRUE(until([&] { return server.commands.size() == 4; }));
  // What was left of the time for the logon runs again.
  ASSERT_TRUE(until([&] { return peer.endedCleanly(); }));
  ASSERT_TRUE(until([&] { return !server.closed.empty(); }));
  const CloseReason reason = server.closed.begin()->second;
  EXPECT_TRUE(reason == CloseReason::LogonTimeout || reason == CloseReason::Idle) << toText(reason);
}

// It has no time of its own any more, but it must not have the loop's either.
TEST_F(Tcp, WhoGoesOnSendingBehindItsOffenceIsNotReadForEver) {
  SessionLimits limits;
  limits.lastWords = 60s;
  Server server(context, with(limits));
  RawPeer peer(context, server);
  peer.send(hex("05 00 00 00 80 02"));
  const Bytes more(64 * 1024, 0xEE);
  std::size_t sent = 0;
  ASSERT_TRUE(until([&] {
    std::error_code failure;
    if (sent < 64 * more.size()) sent += peer.socket.write_some(asio::buffer(more), failure);
    return !server.closed.empty();
  }));
  EXPECT_EQ(server.closed.begin()->second, CloseReason::BadFrame);
}

TEST_F(Tcp, AClientIsToldWhenItsKeepAliveIsDueAndWhenItsServerIsSilent) {
  SessionLimits limits = SessionLimits::forClient();
  limits.keepAlive = 150ms;
  Server server(context);
  Record client;
  const auto session = connect(server.tcp.port(), client, limits);
  session->send(*make<ClHandShake>(1u));
  ASSERT_TRUE(until([&] { return client.commands.size() == 1; }));
  session->setState(SessionState::ShakenHands);
  ASSERT_TRUE(until([&] { return !client.closed.empty(); }));
  EXPECT_EQ(client.closed.begin()->second, CloseReason::Idle);
  EXPECT_GE(client.keepAlivesDue, 1u);
}

TEST_F(Tcp, AServerThatGoesAwayLeavesNoSessionBehind) {
  Record client;
  {
    Server server(context);
    const auto session = connect(server.tcp.port(), client);
    ASSERT_TRUE(until([&] { return server.opened == 1 && client.opened == 1; }));
  }
  ASSERT_TRUE(until([&] { return !client.closed.empty(); }));
}

// Frame, command, dispatch, results, bytes, on both sides, over a real connection. Whatever the loop needs for its
// reads and writes is counted too.
TEST_F(Tcp, AThousandRequestsAndTheirRepliesAllocateNothing) {
  struct Client final : SessionEvents, SrvCmdProcessor {
    Client() { dispatcher.registerSrvCmdProcessor(*this, true); }
    void onOpen(TcpSession& session) override { session.send(*make<ClHandShake>(1u)); }
    void onCommand(TcpSession& session, CommandHandle<> command) override {
      present = &session;
      dispatcher.dispatchCommand(*command);
    }
    bool processCommand(PokerCommandTmpl<SrvCmdProcessorType>& command) override {
      ResultsGuard guard(results);
      command.process(results, *this);
      guard.send(buffer, [&](const EncodedCommand& answer) { present->sendFrame(answer.frame); });
      return true;
    }
    void onSrvHandShaked(SrvCmdProcessor::Results& out, SrvHandShaked& command) override {
      present->setState(SessionState::ShakenHands);
      addReply(out, command, make<ClKeepAlive>(0u));
    }
    void onSrvKeepAliveReply(SrvCmdProcessor::Results& out, const SrvKeepAliveReply& command) override {
      replies = command.sequenceNumber();
      addReply(out, command, make<ClKeepAlive>(replies + 1));
    }
    CmdDispatcher dispatcher;
    SrvCmdProcessor::Results results;
    SerializeCommandBuf buffer{64};
    TcpSession* present = nullptr;
    std::uint32_t replies = 0;
  } client;
  ServerOptions options;
  options.session.limits.rate.framesPerSecond = 1e9;
  Server server(context, std::move(options));
  server.recording = false;
  const auto session = connect(server.tcp.port(), client);
  ASSERT_TRUE(until([&] { return client.replies >= 100; }));
  std::size_t allocations = 0;
  {
    const AllocationCounter counter;
    while (client.replies < 1100) context.run_one();
    allocations = counter.calls();
  }
  EXPECT_EQ(allocations, 0u);
  EXPECT_FALSE(session->isClosing());
}

}  // namespace
}  // namespace poker::test
