#pragma once

#include <CommandProcessor/core/CmdDispatcher.h>
#include <examples/holdem/client/rehearsal/ServerCommands.h>
#include <examples/holdem/shared/Endpoint.h>
#include <examples/holdem/shared/Transcript.h>
#include <hostkit/CommandHandle.h>
#include <hostkit/TcpSession.h>

#include <chrono>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>

namespace poker::holdem {

struct ClientSettings {
  /// How often to show that the client is there when it has nothing else to say; zero: never, and never doubt the server.
  std::chrono::milliseconds keepAlive = std::chrono::seconds(20);
  /// Whether to say ClBye when maintenance begins.
  bool leavesAtMaintenance = false;
};

/// One connection to a server, seen from the player's end. It keeps itself alive; what the server sends is dispatched to
/// ServerCommands and then lies in the inbox. All calls come from the thread that runs the io_context.
class Client final : private SessionEvents {
 public:
  /// What the inbox holds: a command, or the end of the connection.
  struct Arrival {
    CommandHandle<> command;  ///< empty at the end of the connection ...
    CloseReason reason{};     ///< ... which came for this reason
    std::string trouble;      ///< what was wrong with the server's bytes, if that was it
  };
  struct KeepAlives {
    std::uint32_t sent = 0;
    std::uint32_t answered = 0;  ///< in the order in which they were sent
    bool inOrder = true;         ///< whether no answer came that was not the next one
  };

  /// Connects. When that fails, the end of the connection arrives with CloseReason::ConnectFailed.
  /// @param number      of this connection, for the transcript
  /// @param transcript  null for none
  Client(asio::io_context& context, const Endpoint& server, ClientSettings settings, std::int32_t number,
         Transcript* transcript);
  /// Closes.
  ~Client();
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  /// Sends a T, filled with `init(args...)`.
  template <class T, class... Args>
  void send(Args&&... args) {
    session_->send(*make<T>(std::forward<Args>(args)...));
  }
  /// Sends bytes as they are.
  void sendFrame(std::span<const std::uint8_t> bytes) { session_->sendFrame(bytes); }
  /// Sends the next keep-alive, whose reply goes to the inbox. Those that the client sends by itself count in the same
  /// order; their replies do not.
  /// @return its sequence number
  std::uint32_t sendKeepAlive();

  /// Takes the oldest arrival but for the commands to be left there; nothing when there is none.
  std::optional<Arrival> takeArrival(const std::function<bool(const PokerCommandI&)>& leave);

  const ClientSettings& settings() const { return settings_; }
  const KeepAlives& keepAlives() const { return keepAlives_; }

  // For the handlers of commands.

  void becomeShakenHands();
  void keepAliveAnswered(std::uint32_t sequenceNumber);

 private:
  struct Unanswered {
    std::uint32_t sequenceNumber;
    bool bySelf;
  };

  void onOpen(TcpSession& session) override;
  void onCommand(TcpSession& session, CommandHandle<> command) override;
  void onError(TcpSession& session, CloseReason reason, const DecodeError& error) override;
  void onHandlerFailed(TcpSession& session, std::exception_ptr failure) override;
  void onKeepAliveDue(TcpSession& session) override;
  void onClosed(TcpSession& session, CloseReason reason) override;
  void onBytes(const TcpSession& session, FrameDirection direction, std::span<const std::uint8_t> frame) override;

  void keepAlive(bool bySelf);

  asio::io_context& context_;
  ClientSettings settings_;
  std::int32_t number_;
  Transcript* transcript_;
  ServerCommands serverCommands_;
  CmdDispatcher dispatcher_;
  std::deque<Arrival> inbox_;
  std::string trouble_;
  std::deque<Unanswered> unanswered_;
  KeepAlives keepAlives_;
  bool swallow_ = false;  // the command in hand is of no interest to the inbox
  bool ended_ = false;
  std::shared_ptr<TcpSession> session_;
};

}  // namespace poker::holdem
