#pragma once

// What the tests of sessions share: what one side's sessions have told, and the loop that they run in.

#include <hostkit/TcpServer.h>

#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include "HostKitUse.h"

namespace poker::test {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// What the events of one side's sessions said.
struct Record : SessionEvents {
  std::vector<std::string> commands;
  std::map<std::int32_t, CloseReason> closed;  // by connection id
  std::vector<DecodeError> errors;
  std::vector<std::string> refused;
  std::size_t opened = 0;
  std::size_t handlersFailed = 0;
  std::size_t keepAlivesDue = 0;
  Bytes in;
  Bytes out;

  void onOpen(TcpSession&) override { ++opened; }
  void onCommand(TcpSession&, CommandHandle<> command) override {
    commands.emplace_back(CommandFactory::find(*command)->name());
  }
  void onRefused(TcpSession&, const CommandClass& named) override { refused.emplace_back(named.name()); }
  void onError(TcpSession&, CloseReason, const DecodeError& error) override { errors.push_back(error); }
  void onHandlerFailed(TcpSession&, std::exception_ptr) override { ++handlersFailed; }
  void onKeepAliveDue(TcpSession&) override { ++keepAlivesDue; }
  void onClosed(TcpSession& session, CloseReason reason) override {
    EXPECT_TRUE(closed.emplace(session.id().value(), reason).second) << "closed twice";
  }
  void onBytes(const TcpSession&, FrameDirection direction, std::span<const std::uint8_t> bytes) override {
    Bytes& to = direction == FrameDirection::In ? in : out;
    to.insert(to.end(), bytes.begin(), bytes.end());
  }
};

class SessionTest : public testing::Test {
 protected:
  /// Runs the loop until it is so; a test that waits for what never comes fails.
  template <class Condition>
  bool until(Condition&& condition) {
    const auto end = Clock::now() + 10s;
    while (!condition()) {
      if (Clock::now() > end) return false;
      context.restart();
      context.run_one_for(5ms);
    }
    return true;
  }
  /// A client's session.
  std::shared_ptr<TcpSession> connect(std::uint16_t port, SessionEvents& events,
                                      const SessionLimits& limits = SessionLimits::forClient()) {
    auto options = std::make_shared<SessionOptions>(SessionOptions::forClient());
    options->limits = limits;
    return TcpSession::connect(context, "127.0.0.1", port, std::move(options), events);
  }
  static std::shared_ptr<TcpSession> onlySession(TcpServer& server) {
    std::shared_ptr<TcpSession> only;
    server.sessions().forEach([&](const ConnectionID&, const std::shared_ptr<TcpSession>& one) { only = one; });
    return only;
  }

  asio::io_context context;
};

}  // namespace poker::test
