#include <hostkit/TcpServer.h>

#include <CommandProcessor/commands/session/SrvBusy.h>
#include <hostkit/Batch.h>
#include <hostkit/Encode.h>

#include <asio/ip/address.hpp>
#include <asio/post.hpp>
#include <asio/socket_base.hpp>

#include <algorithm>
#include <chrono>
#include <new>
#include <utility>

namespace poker {
namespace {

/// So many connections may be on their way out with a SrvBusy; above that they are closed without a word.
constexpr std::size_t kTurnedAway = 64;
/// After a failed accept, which mostly means that the process has no file descriptors left.
constexpr std::chrono::milliseconds kRetryAfter(100);

/// The host hears nothing of a connection that is turned away.
class Silence final : public SessionEvents {
 public:
  void onCommand(TcpSession&, CommandHandle<>) override {}
};

Silence& silence() {
  static Silence instance;
  return instance;
}

}  // namespace

TcpServer::TcpServer(asio::io_context& context, ServerOptions options, SessionEvents& events)
    : context_(context),
      events_(events),
      maxConnections_(options.maxConnections),
      acceptor_(listenOn(context, options)),
      sessionOptions_(std::make_shared<const SessionOptions>(std::move(options.session))),
      retry_(context),
      port_(acceptor_.local_endpoint().port()) {}

// The buffers are set before that, since connections inherit them and a window is agreed on at its start.
TcpServer::Acceptor TcpServer::listenOn(asio::io_context& context, const ServerOptions& options) {
  const asio::ip::tcp::endpoint endpoint(asio::ip::make_address(options.address), options.port);
  Acceptor acceptor(context, endpoint.protocol());
  acceptor.set_option(asio::socket_base::reuse_address(true));
  if (const auto bytes = static_cast<int>(std::min(options.session.limits.systemBuffer, 1U << 30)); bytes != 0) {
    acceptor.set_option(asio::socket_base::receive_buffer_size(bytes));
    acceptor.set_option(asio::socket_base::send_buffer_size(bytes));
  }
  acceptor.bind(endpoint);
  acceptor.listen();
  return acceptor;
}

TcpServer::~TcpServer() {
  sessions_.forEach([](const ConnectionID&, const std::shared_ptr<TcpSession>& session) { session->abandon(); });
  for (const std::shared_ptr<TcpSession>& session : turnedAway_) session->abandon();
}

void TcpServer::start() { acceptNext(); }

TcpSession* TcpServer::find(const ConnectionID& id) {
  const std::shared_ptr<TcpSession>* found = sessions_.find(id);
  return found == nullptr ? nullptr : found->get();
}

void TcpServer::sendToAll(const PokerCommandI& command) {
  SerializeCommandBuf buffer(1024);
  const std::span<const std::uint8_t> frame = encodeCommand(command, buffer);
  sessions_.forEach([&](const ConnectionID&, const std::shared_ptr<TcpSession>& session) {
    if (session->state() != SessionState::Connected) session->sendFrame(frame, mayCompress(command));
  });
}

void TcpServer::acceptNext() {
  if (!acceptor_.is_open()) return;
  acceptor_.async_accept(
      context_, [this, alive = std::weak_ptr(alive_)](const std::error_code& failure, TcpSession::Socket socket) {
        if (!alive.expired()) onAccept(failure, std::move(socket));
      });
}

void TcpServer::onAccept(const std::error_code& failure, TcpSession::Socket socket) {
  if (!acceptor_.is_open()) return;
  if (failure) {
    retry_.expires_after(kRetryAfter);
    retry_.async_wait([this, alive = std::weak_ptr(alive_)](const std::error_code& cancelled) {
      if (!cancelled && !alive.expired()) acceptNext();
    });
    return;
  }
  // First the next accept: a host's onOpen() may stop the server, or throw.
  acceptNext();
  try {
    takeIn(std::move(socket));
  } catch (const std::bad_alloc&) {  // costs this connection, not the others
  }
}

void TcpServer::takeIn(TcpSession::Socket socket) {
  if (sessions_.size() >= maxConnections_ || connectionIDsLeft() == 0) {
    turnAway(std::move(socket));
    return;
  }
  std::shared_ptr<TcpSession> session = TcpSession::accept(std::move(socket), {}, sessionOptions_, events_);
  session->id_ = sessions_.add(session);
  session->server_ = this;
  ++accepted_;
  session->start();
}

void TcpServer::turnAway(TcpSession::Socket socket) {
  ++refused_;
  if (turnedAway_.size() >= kTurnedAway) return;  // the socket closes itself
  std::shared_ptr<TcpSession> session = TcpSession::accept(std::move(socket), {}, sessionOptions_, silence());
  session->server_ = this;
  turnedAway_.push_back(session);
  session->start();
  session->closeAfter(*make<SrvBusy>());
}

void TcpServer::onSessionClosed(TcpSession& session) {
  if (session.id().isValid()) {
    sessions_.remove(session.id());
  } else {
    std::erase_if(turnedAway_, [&](const std::shared_ptr<TcpSession>& other) { return other.get() == &session; });
  }
  checkDrained();
}

void TcpServer::stopAccepting() {
  std::error_code ignored;
  acceptor_.close(ignored);
  retry_.cancel();
}

void TcpServer::drain(SrvErrorDisconnected::ErrorCode code, std::function<void()> done) {
  stopAccepting();
  drained_ = std::move(done);
  sessions_.forEach(
      [&](const ConnectionID&, const std::shared_ptr<TcpSession>& session) { session->disconnect(code); });
  checkDrained();
}

void TcpServer::checkDrained() {
  if (!drained_ || !sessions_.empty() || !turnedAway_.empty()) return;
  asio::post(context_, std::exchange(drained_, {}));
}

}  // namespace poker
