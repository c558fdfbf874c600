#include <examples/holdem/client/rehearsal/Client.h>

#include <asio/io_context.hpp>

#include <fmt/format.h>

#include <algorithm>

namespace poker::holdem {

namespace {

std::shared_ptr<const SessionOptions> optionsFrom(const ClientSettings& settings) {
  auto options = std::make_shared<SessionOptions>(SessionOptions::forClient());
  options->limits.keepAlive = settings.keepAlive;
  return options;
}

}  // namespace

Client::Client(asio::io_context& context, const Endpoint& server, ClientSettings settings, std::int32_t number,
               Transcript* transcript)
    : context_(context), settings_(settings), number_(number), transcript_(transcript), serverCommands_(*this) {
  dispatcher_.registerSrvCmdProcessor(serverCommands_, true);
  session_ = TcpSession::connect(context, server.host, server.port, optionsFrom(settings_), *this);
}

Client::~Client() {
  session_->close();
  // The session tells its end from the event loop, and only then forgets this object.
  while (!ended_ && context_.run_one() != 0) {
  }
}

std::uint32_t Client::sendKeepAlive() {
  keepAlive(false);
  return keepAlives_.sent;
}

std::optional<Client::Arrival> Client::takeArrival(const std::function<bool(const PokerCommandI&)>& leave) {
  const auto place = std::find_if(inbox_.begin(), inbox_.end(),
                                  [&](const Arrival& arrival) { return !arrival.command || !leave(*arrival.command); });
  if (place == inbox_.end()) return std::nullopt;
  Arrival arrival = std::move(*place);
  inbox_.erase(place);
  return arrival;
}

void Client::becomeShakenHands() { session_->setState(SessionState::ShakenHands); }

void Client::keepAliveAnswered(std::uint32_t sequenceNumber) {
  if (unanswered_.empty() || unanswered_.front().sequenceNumber != sequenceNumber) {
    keepAlives_.inOrder = false;
    return;
  }
  ++keepAlives_.answered;
  swallow_ = unanswered_.front().bySelf;
  unanswered_.pop_front();
}

void Client::keepAlive(bool bySelf) {
  unanswered_.push_back({++keepAlives_.sent, bySelf});
  send<ClKeepAlive>(keepAlives_.sent);
}

void Client::onOpen(TcpSession& session) {
  if (transcript_ != nullptr) transcript_->remark(number_, "connected to " + session.remoteAddress());
}

void Client::onCommand(TcpSession&, CommandHandle<> command) {
  swallow_ = false;
  dispatcher_.dispatchCommand(*command);
  if (!swallow_) inbox_.push_back({std::move(command), {}, {}});
}

void Client::onError(TcpSession&, CloseReason, const DecodeError& error) {
  trouble_ = error.toString();
  if (transcript_ != nullptr) transcript_->trouble(number_, trouble_);
}

void Client::onHandlerFailed(TcpSession&, std::exception_ptr) { trouble_ = "a handler of the client has failed"; }

void Client::onKeepAliveDue(TcpSession&) { keepAlive(true); }

void Client::onClosed(TcpSession&, CloseReason reason) {
  ended_ = true;
  if (transcript_ != nullptr) transcript_->remark(number_, fmt::format("closed ({})", toText(reason)));
  inbox_.push_back({{}, reason, trouble_});
}

void Client::onBytes(const TcpSession&, FrameDirection direction, std::span<const std::uint8_t> frame) {
  if (transcript_ == nullptr) return;
  transcript_->frame(
      number_, direction == FrameDirection::In ? CommandDirection::ServerToClient : CommandDirection::ClientToServer,
      frame);
}

}  // namespace poker::holdem
