#pragma once

#include <examples/holdem/client/rehearsal/Client.h>

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>

#include <fmt/color.h>

#include <chrono>
#include <cstdint>
#include <exception>
#include <functional>
#include <list>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

namespace poker::holdem {

/// An expectation did not hold; it has been told. The script ends here.
class ExpectationFailed : public std::exception {
 public:
  const char* what() const noexcept override { return "an expectation did not hold"; }
};

/// There is no connection, so that nothing could be expected.
class NotConnected : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What a script stands on: its connections, and its expectations, each of which is told in a line, held or failed. While
/// it waits, the event loop runs; so a script reads from top to bottom.
class Rehearsal {
 public:
  using Duration = std::chrono::milliseconds;

  /// @param colour      whether to tell the expectations in colour
  /// @param transcript  of all connections; null for none
  Rehearsal(ClientSettings settings, bool colour, Transcript* transcript);

  /// What an answer may take.
  static constexpr Duration kAnswerTime = std::chrono::seconds(5);

  /// One more connection, which lives as long as the rehearsal.
  Client& connect(const Endpoint& server);

  /// The server's next command must be a T that `is` accepts, and come in time. SrvMaintenance and
  /// SrvNewClientVersionAvail may come at any time: they wait until they are expected.
  /// @param what  the expectation in words
  /// @throws ExpectationFailed, NotConnected
  template <class T>
  void expect(Client& client, std::string_view what, const std::type_identity_t<std::function<bool(const T&)>>& is = {},
              Duration within = kAnswerTime) {
    const CommandHandle<T> done = receive<T>(client, what, is, within);
  }
  /// As above, for a command that is still of use.
  template <class T>
  CommandHandle<T> receive(Client& client, std::string_view what,
                           const std::type_identity_t<std::function<bool(const T&)>>& is = {},
                           Duration within = kAnswerTime) {
    CommandHandle<> came =
        awaitCommand(client, what, within, [](const PokerCommandI& command) { return isA<T>(command); });
    if (!isA<T>(*came) || (is && !is(static_cast<const T&>(*came)))) failOn(what, *came);
    held(what);
    return CommandHandle<T>(static_cast<T&>(*came.detach()));
  }
  /// As expect(), of either class.
  /// @return whether it was a T
  template <class T, class Otherwise>
  bool expectEither(Client& client, std::string_view what) {
    const CommandHandle<> came = awaitCommand(client, what, kAnswerTime, [](const PokerCommandI& command) {
      return isA<T>(command) || isA<Otherwise>(command);
    });
    if (!isA<T>(*came) && !isA<Otherwise>(*came)) failOn(what, *came);
    held(what);
    return isA<T>(*came);
  }
  /// The connection must end next, at the server's wish and in time.
  void expectEnd(Client& client, std::string_view what, Duration within = kAnswerTime);
  /// For what is no command.
  /// @param otherwise  what was found in place of it
  void check(bool holds, std::string_view what, std::string_view otherwise);

  /// Tells what the script is doing, in a line that is no expectation.
  void say(std::string_view text);
  /// Shows a text that is meant for the player.
  void show(std::string_view text);

  std::uint32_t heldCount() const { return held_; }

 private:
  using Wanted = std::function<bool(const PokerCommandI&)>;

  template <class T>
  static bool isA(const PokerCommandI& command) {
    return dynamic_cast<const T*>(&command) != nullptr;
  }

  std::optional<Client::Arrival> await(Client& client, Duration within, const Wanted& wanted);
  CommandHandle<> awaitCommand(Client& client, std::string_view what, Duration within, const Wanted& wanted);
  void held(std::string_view what);
  [[noreturn]] void fail(std::string_view what, std::string_view otherwise);
  [[noreturn]] void failOn(std::string_view what, const PokerCommandI& came);
  void tell(const fmt::text_style& style, std::string_view verdict, std::string_view what);

  ClientSettings settings_;
  bool colour_;
  Transcript* transcript_;
  asio::io_context context_{1};
  // A wait lasts as long as it may, also when no connection is left.
  asio::executor_work_guard<asio::io_context::executor_type> work_{context_.get_executor()};
  std::list<Client> connections_;
  std::uint32_t held_ = 0;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace poker::holdem
