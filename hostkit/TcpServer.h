#pragma once

#include <hostkit/ConnectionTable.h>
#include <hostkit/TcpSession.h>

#include <asio/basic_socket_acceptor.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace poker {

struct ServerOptions {
  std::string address = "127.0.0.1";  ///< where to listen; "0.0.0.0" or "::" for everywhere
  std::uint16_t port = 0;             ///< 0: the system chooses, see TcpServer::port()
  std::size_t maxConnections = 10000;
  SessionOptions session = SessionOptions::forServer();
};

/// Listens, and keeps a session and its id for every connection. A connection above the limit gets SrvBusy and is
/// closed; the host hears nothing of it. The thread rule is TcpSession's.
class TcpServer {
 public:
  /// Listens at once; connections are taken from start() on.
  /// @param events  of all sessions; must outlive the server
  /// @throws std::system_error  for example when the port is taken
  TcpServer(asio::io_context& context, ServerOptions options, SessionEvents& events);
  /// Closes all sessions, without events.
  ~TcpServer();
  TcpServer(const TcpServer&) = delete;
  TcpServer& operator=(const TcpServer&) = delete;

  void start();
  std::uint16_t port() const { return port_; }

  /// The open sessions, among them those that are closing. A session is in it from before onOpen() until after
  /// onClosed().
  ConnectionTable<std::shared_ptr<TcpSession>>& sessions() { return sessions_; }
  /// Null when the id is not, or no longer, that of a session.
  TcpSession* find(const ConnectionID& id);
  /// Sends the command to every session that has shaken hands; encoded once.
  /// @throws EncodeError, std::bad_alloc
  void sendToAll(const PokerCommandI& command);

  /// Takes no more connections; the open ones go on.
  void stopAccepting();
  /// Takes no more connections, ends each session with SrvErrorDisconnected(code) after what it has queued, and calls
  /// `done` once all are closed, which SessionLimits::lastWords bounds. `done` comes from the event loop.
  void drain(SrvErrorDisconnected::ErrorCode code, std::function<void()> done);

  /// Connections that were taken, and those that were turned away.
  std::uint64_t accepted() const { return accepted_; }
  std::uint64_t refused() const { return refused_; }

 private:
  friend TcpSession;

  using Acceptor = asio::basic_socket_acceptor<asio::ip::tcp, TcpSession::Executor>;

  /// What the loop's operations hold, so that they find out when the server is gone.
  struct Alive {};

  static Acceptor listenOn(asio::io_context& context, const ServerOptions& options);
  void acceptNext();
  void onAccept(const std::error_code& failure, TcpSession::Socket socket);
  void takeIn(TcpSession::Socket socket);
  void turnAway(TcpSession::Socket socket);
  void onSessionClosed(TcpSession& session);
  void checkDrained();

  asio::io_context& context_;
  SessionEvents& events_;
  std::size_t maxConnections_;
  Acceptor acceptor_;
  std::shared_ptr<const SessionOptions> sessionOptions_;
  asio::basic_waitable_timer<std::chrono::steady_clock, asio::wait_traits<std::chrono::steady_clock>,
                             TcpSession::Executor>
      retry_;
  std::uint16_t port_ = 0;
  ConnectionTable<std::shared_ptr<TcpSession>> sessions_;
  std::vector<std::shared_ptr<TcpSession>> turnedAway_;
  std::function<void()> drained_;
  std::uint64_t accepted_ = 0;
  std::uint64_t refused_ = 0;
  std::shared_ptr<Alive> alive_ = std::make_shared<Alive>();
};

}  // namespace poker
