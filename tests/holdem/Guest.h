#pragma once

#include "Place.h"

#include <CommandProcessor/commands/AllCommands.h>
#include <hostkit/TcpSession.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace poker::holdem::test {

/// A client that comes in, logs on, and then sends just what a test says and keeps what it hears.
class Guest final : private SessionEvents {
 public:
  bool isLoggedOn = false;
  bool isClosed = false;

  Guest(Place& place, std::string guestName) : place_(place), name_(std::move(guestName)) {
    auto options = SessionOptions::forClient();
    session_ = TcpSession::connect(place.context, "127.0.0.1", place.server.port(),
                                   std::make_shared<const SessionOptions>(options), *this);
  }
  ~Guest() override {
    session_->close();
    while (!isClosed) {
      if (place_.context.stopped()) place_.context.restart();
      place_.context.run_one();
    }
  }
  const std::string& name() const { return name_; }
  void close() { session_->close(); }

  template <class T, class... Args>
  void send(Args&&... args) {
    session_->send(*make<T>(std::forward<Args>(args)...));
  }
  void sitDown(unsigned seat, std::int64_t units) {
    send<ClSitDown>(static_cast<SeatID::value_type>(seat), RealMoneyType::fromUnits(units), TourMoneyChooser::empty());
  }
  void enter(unsigned gameID) { send<ClConnectGame>(gameID, "", "", nullptr, 0); }

  /// The newest T that has come and was not forgotten; null when there is none.
  template <class T>
  const T* heard() const {
    for (auto command = heard_.rbegin(); command != heard_.rend(); ++command) {
      if (const T* found = dynamic_cast<const T*>(command->get())) return found;
    }
    return nullptr;
  }
  template <class T>
  std::size_t count() const {
    std::size_t number = 0;
    for (const auto& command : heard_) number += dynamic_cast<const T*>(command.get()) != nullptr ? 1 : 0;
    return number;
  }
  void forget() { heard_.clear(); }
  /// Calls `f(const T&)` for each T, in the order in which they came.
  template <class T, class F>
  void each(F&& f) const {
    for (const auto& command : heard_) {
      if (const T* found = dynamic_cast<const T*>(command.get())) f(*found);
    }
  }

  bool waitFor(const std::function<bool()>& holds) { return place_.runUntil(holds, std::chrono::seconds(10)); }
  bool comesIn() {
    return waitFor([this] { return isLoggedOn; });
  }
  /// Runs until the server has answered all that was sent before.
  bool isAnswered() {
    const std::size_t pings = count<SrvPing>();
    send<ClPing>();
    return waitFor([&] { return count<SrvPing>() > pings; });
  }
  /// Sends a Question, and waits for a new Answer.
  template <class Answer, class Question, class... Args>
  const Answer& ask(Args&&... args) {
    const std::size_t before = count<Answer>();
    send<Question>(std::forward<Args>(args)...);
    if (!waitFor([&] { return count<Answer>() > before; })) throw std::runtime_error("no answer");
    return *heard<Answer>();
  }
  /// Runs until a T comes; null when none does.
  template <class T>
  const T* hears() {
    waitFor([this] { return heard<T>() != nullptr; });
    return heard<T>();
  }

 private:
  void onCommand(TcpSession& session, CommandHandle<> command) override {
    if (dynamic_cast<SrvHandShaked*>(command.get()) != nullptr) {
      session.setState(SessionState::ShakenHands);
      CommonTypes::NewAccountInfo account;
      account.userName = name_;
      account.password = "secret";
      RawDataHolder nothing;
      send<ClMakeNewAccount>(account, nothing, Int2StringSer());
    } else if (dynamic_cast<SrvRegistrationOk*>(command.get()) != nullptr ||
               dynamic_cast<SrvRegistrationFail*>(command.get()) != nullptr) {
      send<ClLogon>(name_.c_str(), "secret", CommonTypes::HardwareInfo(), nullptr, 0, false, false);
    } else if (dynamic_cast<SrvLogonOk*>(command.get()) != nullptr) {
      session.setState(SessionState::LoggedOn);
      isLoggedOn = true;
    }
    heard_.push_back(std::move(command));
  }
  void onOpen(TcpSession&) override { send<ClHandShake>(kProtocolVersion); }
  void onKeepAliveDue(TcpSession&) override { send<ClKeepAlive>(0u); }
  void onClosed(TcpSession&, CloseReason) override {
    isClosed = true;
    isLoggedOn = false;
  }

  Place& place_;
  std::string name_;
  std::shared_ptr<TcpSession> session_;
  std::vector<CommandHandle<>> heard_;
};

/// Tables on which nothing happens that a test does not ask for: numbered from 1, with so many seats each.
inline ServerSettings quietTables(std::initializer_list<std::size_t> seats) {
  ServerSettings settings = quickServer(0, 2);
  const TableSettings usual = settings.house.tables[0];
  settings.house.tables.clear();
  for (const std::size_t count : seats) {
    TableSettings& table = settings.house.tables.emplace_back(usual);
    table.gameID = static_cast<std::uint32_t>(settings.house.tables.size());
    table.name = "Table " + std::to_string(table.gameID);
    table.seats = count;
    table.handPause = std::chrono::hours(1);
    table.lastSitting = {};
  }
  return settings;
}

}  // namespace poker::holdem::test
