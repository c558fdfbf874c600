#include <examples/holdem/server/Server.h>

#include <examples/holdem/shared/LogLine.h>
#include <hostkit/CommandFactory.h>
#include <inspect/CommandText.h>

#include <asio/post.hpp>

#include <exception>
#include <memory>
#include <utility>

namespace poker::holdem {

namespace {

/// Connections that wait for the answer to their hand-shake, or that end, beyond the clients that are served: enough that
/// one too many hears a SrvBusy that it understands, few enough that nobody fills the process with silent ones.
constexpr std::size_t kAnteroom = 64;

}  // namespace

ServerOptions Server::optionsFrom(const ServerSettings& settings) {
  ServerOptions options;
  options.address = settings.listen.host;
  options.port = settings.listen.port;
  options.maxConnections = settings.maxConnections + kAnteroom;
  options.session.limits = settings.limits;
  // What has a long answer, or one out of the bank. Who comes in and looks around has enough for all of it at once.
  CommandCosts& costs = options.session.costs;
  costs.set<ClConnectGame>(10);
  costs.set<ClGetServerInfo>(20);
  costs.set<ClGetGameInfo>(10);
  costs.set<ClGetHandHistory>(20);
  costs.set<ClRplGetHandHistory>(20);
  costs.set<ClGetPlayerProfile>(10);
  costs.set<ClGetNewPicture>(20);
  costs.set<ClMiscGetPromoInfo>(10);
  for (const TableSettings& table : settings.house.tables) {
    if (table.takesScripts) options.session.allowed.allow<ClScriptSetDealer>(SessionState::Seated);
  }
  return options;
}

Server::Server(asio::io_context& context, ServerSettings settings, Transcript* transcript, FrameObserver* observer)
    : settings_(std::move(settings)),
      transcript_(transcript),
      log_(*Log::getLog("holdem.server", LogCategory::Network)),
      context_(context),
      house_(context, settings_.house, *this),
      clientCommands_(*this, house_),
      clientMiscCommands_(house_),
      clientTourCommands_(house_),
      tcp_(context, optionsFrom(settings_), *this),
      grace_(context) {
  if (observer != nullptr) tap_.emplace(house_, *observer);
  dispatcher_.registerClientCmdProcessor(clientCommands_);
  dispatcher_.registerClientMiscCmdProcessor(clientMiscCommands_, true);
  dispatcher_.registerClientTourCmdProcessor(clientTourCommands_);
  house_.onAllTablesClosed = [this] {
    // All hands that the tables were to play are played; what the last one has to say goes out first.
    tablesClosed_ = true;
    asio::post(context_, [this] {
      if (!draining_) beginDraining(std::chrono::milliseconds::zero());
    });
  };
}

void Server::start(std::function<void()> ended) {
  ended_ = std::move(ended);
  tcp_.start();
  house_.outbox().run([] {});  // what is due from the beginning
  logLine(log_, 0, "listening address={}", Endpoint{settings_.listen.host, port()}.toString());
}

// Maintenance

void Server::announceMaintenance() {
  if (draining_) return;
  announced_ = true;
  logLine(log_, 0, "maintenance-announced connections={}", tcp_.sessions().size());
  if (transcript_ != nullptr) transcript_->heading("maintenance is announced");
  tcp_.sendToAll(*make<SrvMaintenance>(settings_.announcement, kMaintenanceAnnounced));
  house_.outbox().run([this] { house_.lobby().setNews(SrvNewsType::Maintenance, settings_.announcement); });
}

void Server::toggleTournaments() {
  tournamentsStopped_ = !tournamentsStopped_;
  logLine(log_, 0, "tournaments {}", tournamentsStopped_ ? "stopped" : "go-on");
  house_.outbox().run([this] {
    if (tournamentsStopped_) {
      house_.tournaments().suspend();
    } else {
      house_.tournaments().resume();
    }
  });
}

void Server::drain() {
  if (!draining_) return beginDraining(settings_.grace);
  graceEnded_ = tablesClosed_ = true;
  endSessions();
}

void Server::beginDraining(std::chrono::milliseconds grace) {
  draining_ = true;
  logLine(log_, 0, "draining connections={} grace_ms={}", tcp_.sessions().size(), grace.count());
  if (transcript_ != nullptr) {
    transcript_->heading(fmt::format("draining: no new connections, {} open ones", tcp_.sessions().size()));
  }
  tcp_.stopAccepting();
  tcp_.sendToAll(*make<SrvMaintenance>(settings_.farewell, kMaintenanceBegins));
  grace_.expires_after(tcp_.sessions().empty() ? std::chrono::milliseconds::zero() : grace);
  // Cancelled means over early.
  grace_.async_wait([this](const std::error_code&) { endGrace(); });
  if (tablesClosed_) return;
  house_.close([this] {
    tablesClosed_ = true;
    endSessions();
  });
}

void Server::endGrace() {
  graceEnded_ = true;
  logLine(log_, 0, "grace-over connections={}", tcp_.sessions().size());
  if (transcript_ != nullptr && !tcp_.sessions().empty()) transcript_->heading("the grace is over");
  endSessions();
}

void Server::endSessions() {
  if (!graceEnded_ || !tablesClosed_ || std::exchange(endingSessions_, true)) return;
  // Not from inside the event that ends the last hand: what it has to say goes out first.
  asio::post(context_, [this] {
    tcp_.drain(SrvErrorDisconnected::DisconnectConn, [this] {
      logLine(log_, 0, "drained accepted={} refused={}", tcp_.accepted(), tcp_.refused());
      std::exchange(ended_, {})();
    });
  });
}

// For the handlers

bool Server::admit(const ConnectionID& id, std::uint32_t version) {
  TcpSession* session = tcp_.find(id);
  if (session == nullptr || guests_ >= settings_.maxConnections) {
    logLine(log_, 0, "no-room conn={} guests={}", id.value(), guests_);
    return false;
  }
  session->hostData = std::make_shared<Guest>(Guest{version});
  session->setState(SessionState::ShakenHands);
  ++guests_;
  logLine(log_, 0, "admitted conn={} version={} guests={}", id.value(), version, guests_);
  return true;
}

void Server::sendFrame(const ConnectionID& id, std::span<const std::uint8_t> frame) {
  if (TcpSession* session = tcp_.find(id)) session->sendFrame(frame);
}

void Server::setState(const ConnectionID& id, SessionState state) {
  if (TcpSession* session = tcp_.find(id)) session->setState(state);
}

void Server::disconnect(const ConnectionID& id, SrvErrorDisconnected::ErrorCode code) {
  // After what the event in hand has to say.
  asio::post(context_, [this, id, code] {
    if (TcpSession* session = tcp_.find(id)) session->disconnect(code);
  });
}

void Server::hold(const ConnectionID& id) {
  if (TcpSession* session = tcp_.find(id)) session->hold();
}

void Server::proceed(const ConnectionID& id) {
  if (TcpSession* session = tcp_.find(id)) session->proceed();
}

void Server::finish(const ConnectionID& id) {
  if (TcpSession* session = tcp_.find(id)) {
    leave(*session);
    session->closeAfterOutput();
  }
}

void Server::leave(TcpSession& session) {
  if (session.hostData == nullptr) return;
  session.hostData.reset();
  --guests_;
  house_.outbox().run([&] { house_.leave(session.id()); });
}

// What the sessions tell

void Server::onOpen(TcpSession& session) {
  logLine(log_, 0, "opened conn={} peer={}", session.id().value(), session.remoteAddress());
}

void Server::onCommand(TcpSession& session, CommandHandle<> command) {
  logLine(log_, 1, "received conn={} cmd={}", session.id().value(), CommandFactory::find(*command)->name());
  dispatcher_.dispatchCommand(*command);
}

void Server::onError(TcpSession& session, CloseReason reason, const DecodeError& error) {
  logLine(log_, 0, "bad-input conn={} reason={} kind={} cmd={} error={}", session.id().value(), toText(reason),
          toText(error.kind), error.className.empty() ? "none" : error.className, quoted(error.toString()));
  // Of a frame that is no command its own line tells.
  const bool told = error.kind != DecodeError::Kind::LengthBelowMinimum &&
                    error.kind != DecodeError::Kind::LengthAboveLimit && error.kind != DecodeError::Kind::NotAllowed;
  if (transcript_ != nullptr && !told) transcript_->trouble(session.id().value(), error.toString());
}

void Server::onHandlerFailed(TcpSession& session, std::exception_ptr failure) {
  std::string what = "unknown";
  try {
    std::rethrow_exception(failure);
  } catch (const std::exception& error) {
    what = error.what();
  } catch (...) {
  }
  logLine(log_, 0, "handler-failed conn={} error={}", session.id().value(), quoted(what));
  if (transcript_ != nullptr) transcript_->trouble(session.id().value(), "internal error");
  failure_ = failure;
  context_.stop();
}

void Server::onClosed(TcpSession& session, CloseReason reason) {
  leave(session);
  const SessionCounters& counters = session.counters();
  logLine(log_, 0, "closed conn={} reason={} commands_in={} commands_out={} bytes_in={} bytes_out={}",
          session.id().value(), toText(reason), counters.framesIn, counters.framesOut, counters.bytesIn,
          counters.bytesOut);
  if (transcript_ != nullptr) transcript_->remark(session.id().value(), fmt::format("closed ({})", toText(reason)));
  if (tap_) tap_->forget(session);
  // The last one is still in the table.
  if (draining_ && tcp_.sessions().size() <= 1) grace_.cancel();
}

void Server::onBytes(const TcpSession& session, FrameDirection direction, std::span<const std::uint8_t> frame) {
  totals_.count(direction, frame);
  if (tap_) tap_->frame(session, direction, frame);
  if (transcript_ == nullptr) return;
  transcript_->frame(
      session.id().value(),
      direction == FrameDirection::In ? CommandDirection::ClientToServer : CommandDirection::ServerToClient, frame);
}

}  // namespace poker::holdem
