#pragma once

#include <CommandProcessor/commands/AllCommands.h>
#include <examples/holdem/shared/Endpoint.h>
#include <hostkit/TcpServer.h>

#include <asio/io_context.hpp>

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace poker::holdem::test {

/// A server that lets everybody in and otherwise says what a test tells it. It notes what the one client asks for.
class MadeServer : public SessionEvents {
 public:
  explicit MadeServer(asio::io_context& context) : context_(context), server_(context, {}, *this) { server_.start(); }

  std::vector<std::string> heard;  // by class, but for coming in and what takesItself() has taken
  std::function<void(std::string_view)> answer;

  Endpoint endpoint() const { return {"127.0.0.1", server_.port()}; }
  template <class T, class... Args>
  void say(Args&&... args) {
    session_->send(*make<T>(std::forward<Args>(args)...));
  }
  void breakConnection() { session_->close(); }
  bool runUntil(const std::function<bool()>& holds) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!holds() && std::chrono::steady_clock::now() < deadline) {
      context_.run_one_for(std::chrono::milliseconds(50));
      if (context_.stopped()) context_.restart();
    }
    return holds();
  }
  bool hears(std::size_t commands) {
    return runUntil([&] { return heard.size() >= commands; });
  }

 private:
  virtual void onLoggedOn() {}
  /// Sees each command first.
  /// @return whether it is not to be noted
  virtual bool takesItself(std::string_view name, const PokerCommandI& command) = 0;

  void onOpen(TcpSession& session) override { session_ = &session; }
  void onCommand(TcpSession& session, CommandHandle<> command) override {
    session_ = &session;
    const std::string name(CommandFactory::find(*command)->name());
    if (name == "ClHandShake") {
      say<SrvHandShaked>();
      session.setState(SessionState::ShakenHands);
    } else if (name == "ClLogon") {
      say<SrvLogonOk>("Player", "", false, RealMoneyAcc(), true);
      session.setState(SessionState::Seated);
      onLoggedOn();
    } else if (!takesItself(name, *command)) {
      heard.push_back(name);
      if (answer) answer(name);
    }
  }

  asio::io_context& context_;
  TcpServer server_;
  TcpSession* session_ = nullptr;
};

}  // namespace poker::holdem::test
