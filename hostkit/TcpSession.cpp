#include <hostkit/TcpSession.h>

#include <CommandProcessor/wire/SerializeCommandBuf.h>
#include <hostkit/Batch.h>
#include <hostkit/Encode.h>
#include <hostkit/TcpServer.h>

#include <asio/buffer.hpp>
#include <asio/error.hpp>
#include <asio/ip/address.hpp>
#include <asio/ip/basic_resolver.hpp>
#include <asio/post.hpp>
#include <asio/socket_base.hpp>

#include <algorithm>
#include <new>
#include <utility>

namespace poker {
namespace {

using Clock = std::chrono::steady_clock;
constexpr Clock::time_point kNever = Clock::time_point::max();

/// What a peer may still have been sending when its session ended. One that sends more does not listen: it is cut off at
/// once, and not read at full speed until SessionLimits::lastWords are over.
constexpr std::size_t kMostThrownAway = 256 * 1024;

Clock::time_point after(Clock::time_point now, SessionLimits::Duration duration) {
  return duration > SessionLimits::Duration::zero() ? now + duration : kNever;
}

// One for all sessions of a thread: what is written is copied into a session's queue at once.
SerializeCommandBuf& scratchBuffer() {
  thread_local SerializeCommandBuf buffer(1024);
  return buffer;
}

// A frame that waits to be queued may lie in the other one.
SerializeCommandBuf& batchBuffer() {
  thread_local SerializeCommandBuf buffer(1024);
  return buffer;
}

// One for all sessions of a thread, as long as no handler runs the event loop.
std::vector<std::uint8_t>& unpackedFrames() {
  thread_local std::vector<std::uint8_t> frames;
  return frames;
}

std::string toString(const asio::ip::tcp::endpoint& endpoint) {
  const asio::ip::address address = endpoint.address();
  const std::string text = address.to_string();
  return (address.is_v6() ? '[' + text + ']' : text) + ':' + std::to_string(endpoint.port());
}

}  // namespace

std::string_view toText(CloseReason reason) {
  switch (reason) {
    case CloseReason::ByHost:
      return "ByHost";
    case CloseReason::ByPeer:
      return "ByPeer";
    case CloseReason::ConnectFailed:
      return "ConnectFailed";
    case CloseReason::ConnectionLost:
      return "ConnectionLost";
    case CloseReason::BadFrame:
      return "BadFrame";
    case CloseReason::BadCommand:
      return "BadCommand";
    case CloseReason::HandShakeTimeout:
      return "HandShakeTimeout";
    case CloseReason::LogonTimeout:
      return "LogonTimeout";
    case CloseReason::FrameTimeout:
      return "FrameTimeout";
    case CloseReason::Idle:
      return "Idle";
    case CloseReason::RateLimit:
      return "RateLimit";
    case CloseReason::OutputStalled:
      return "OutputStalled";
    case CloseReason::OutputOverflow:
      return "OutputOverflow";
    case CloseReason::HandlerFailed:
      return "HandlerFailed";
    case CloseReason::OutOfMemory:
      return "OutOfMemory";
    case CloseReason::Full:
      return "Full";
  }
  return "unknown";
}

SessionEvents::~SessionEvents() = default;

TcpSession::TcpSession(Socket socket, const ConnectionID& id, std::shared_ptr<const SessionOptions> options,
                       SessionEvents& events)
    : options_(std::move(options)),
      events_(events),
      socket_(std::move(socket)),
      timer_(socket_.get_executor()),
      id_(id),
      framer_(options_->limits.frames),
      bucket_(options_->limits.rate, Clock::now()) {
  framer_.setWiping(options_->policy.wipeSecrets);
}

TcpSession::~TcpSession() = default;

// Opening

std::shared_ptr<TcpSession> TcpSession::connect(asio::io_context& context, const std::string& host, std::uint16_t port,
                                                std::shared_ptr<const SessionOptions> options, SessionEvents& events) {
  std::shared_ptr<TcpSession> session(new TcpSession(Socket(context), {}, std::move(options), events));
  session->stateDeadline_ = after(Clock::now(), session->limits().connect);
  session->armTimer();
  session->resolve(host, port);
  return session;
}

std::shared_ptr<TcpSession> TcpSession::accept(Socket socket, const ConnectionID& id,
                                               std::shared_ptr<const SessionOptions> options, SessionEvents& events) {
  return std::shared_ptr<TcpSession>(new TcpSession(std::move(socket), id, std::move(options), events));
}

void TcpSession::start() {
  if (!open_ && !ended_) begin();
}

void TcpSession::resolve(const std::string& host, std::uint16_t port) {
  std::error_code notNumeric;
  const asio::ip::address address = asio::ip::make_address(host, notNumeric);
  if (!notNumeric) {
    connectTo({Endpoint(address, port)}, 0);
    return;
  }
  using Resolver = asio::ip::basic_resolver<asio::ip::tcp, Executor>;
  const auto resolver = std::make_shared<Resolver>(socket_.get_executor());
  resolver->async_resolve(
      host, std::to_string(port),
      [self = shared_from_this(), resolver](const std::error_code& failure, const Resolver::results_type& results) {
        std::vector<Endpoint> endpoints;
        if (!failure) {
          for (const auto& result : results) endpoints.push_back(result.endpoint());
        }
        self->connectTo(std::move(endpoints), 0);
      });
}

void TcpSession::connectTo(std::vector<Endpoint> endpoints, std::size_t index) {
  if (ended_) return;
  if (index >= endpoints.size()) {
    closeNow(CloseReason::ConnectFailed);
    return;
  }
  std::error_code ignored;
  socket_.close(ignored);
  const Endpoint endpoint = endpoints[index];
  socket_.async_connect(endpoint, [self = shared_from_this(), tried = std::move(endpoints),
                                   index](const std::error_code& failure) mutable {
    if (self->ended_) return;
    if (failure) {
      self->connectTo(std::move(tried), index + 1);
    } else {
      self->begin();
    }
  });
}

void TcpSession::begin() {
  std::error_code ignored;
  socket_.set_option(asio::ip::tcp::no_delay(true), ignored);  // frames already leave together
  socket_.set_option(asio::socket_base::keep_alive(true), ignored);
  std::error_code gone;
  const Endpoint peer = socket_.remote_endpoint(gone);
  if (!gone) remoteAddress_ = toString(peer);
  const Endpoint own = socket_.local_endpoint(gone);
  if (!gone) localAddress_ = toString(own);

  open_ = true;
  const Time now = Clock::now();
  if (isClosing()) {
    stateDeadline_ = after(now, limits().lastWords);
  } else {
    idleDeadline_ = after(now, limits().idle());
    enter(state_);
  }
  guarded([&] { events_.onOpen(*this); });
  flush();
  read();
  armTimer();
}

void TcpSession::setState(SessionState state) {
  if (!isClosing() && state < SessionState::Closing && state != state_) enter(state);
}

void TcpSession::enter(SessionState state) {
  state_ = state;
  framer_.setLoggedOn(state >= SessionState::LoggedOn);
  // Who logs on has heard that its hands are shaken, and takes everything from then on.
  packs_ = side() == Side::Server && limits().batchFrom != 0 && state >= SessionState::LoggedOn;
  if (!open_) return;  // connecting: begin() comes back here
  const Time now = Clock::now();
  stateDeadline_ = state == SessionState::Connected     ? after(now, limits().handShake)
                   : state == SessionState::ShakenHands ? after(now, limits().logon)
                                                        : kNever;
  keepAliveDue_ = side() == Side::Client && state != SessionState::Connected ? after(now, limits().keepAlive) : kNever;
  armTimer();
}

// Receiving

void TcpSession::read() {
  if (!open_ || reading_ || held_ || peerEnded_ || resume_ != kNever) return;
  if (isClosing()) framer_.reset();  // read and thrown away: unread bytes would make the system reset the connection
  std::span<std::uint8_t> space;
  try {
    space = framer_.prepare();
  } catch (const std::bad_alloc&) {
    closeNow(CloseReason::OutOfMemory);
    return;
  }
  reading_ = true;
  socket_.async_read_some(asio::buffer(space.data(), space.size()),
                          detail::handlerIn(handlerMemory_, [self = shared_from_this()](const std::error_code& failure,
                                                                                        std::size_t received) {
                            self->onRead(failure, received);
                          }));
}

void TcpSession::onRead(const std::error_code& failure, std::size_t received) {
  reading_ = false;
  if (!open_) return;
  if (failure == asio::error::eof) {
    // The peer may have ended its own stream only: what is queued for it still goes out.
    peerEnded_ = true;
    if (!isClosing()) beginClosing(CloseReason::ByPeer);
    flush();
    return;
  }
  if (failure) {
    closeNow(CloseReason::ConnectionLost);
    return;
  }
  counters_.bytesIn += received;
  if (isClosing()) {
    thrownAway_ += received;
    if (thrownAway_ > kMostThrownAway) return closeNow(reason_);
    read();
    return;
  }
  framer_.commit(received);
  processFrames();
}

void TcpSession::processFrames() {
  const Time now = Clock::now();
  const std::uint64_t framesBefore = framer_.frames();
  processing_ = true;
  while (open_ && !isClosing() && !held_) {
    if (!limits().rate.cut && !bucket_.available(now)) {
      resume_ = bucket_.next();
      break;
    }
    Frame frame;
    const StreamFramer::Result result = framer_.next(frame);
    if (result == StreamFramer::Result::NeedMore) break;
    if (result == StreamFramer::Result::Frame) {
      processFrame(frame.bytes, now);
      continue;
    }
    DecodeError error;
    error.kind = framer_.error().kind == FramingError::Kind::LengthBelowMinimum ? DecodeError::Kind::LengthBelowMinimum
                                                                                : DecodeError::Kind::LengthAboveLimit;
    error.message = framer_.error().message();
    protocolError(CloseReason::BadFrame, error);
  }
  processing_ = false;
  if (!open_) return;
  if (!isClosing() && !held_) {
    if (framer_.frames() != framesBefore) {
      idleDeadline_ = after(now, limits().idle());
      frameDeadline_ = kNever;
    }
    if (resume_ != kNever || !framer_.hasPartial()) {
      frameDeadline_ = kNever;
    } else if (frameDeadline_ == kNever) {
      frameDeadline_ = after(now, limits().wholeFrame);
    }
  }
  flush();
  read();
  armTimer();
}

void TcpSession::hold() {
  if (isClosing() || std::exchange(held_, true)) return;
  heldSince_ = Clock::now();
  heldDeadline_ = std::exchange(stateDeadline_, kNever);
  frameDeadline_ = idleDeadline_ = kNever;
}

void TcpSession::proceed() {
  if (!std::exchange(held_, false)) return;
  const Time now = Clock::now();
  // Unless a new state has brought a deadline of its own, or needs none.
  if (stateDeadline_ == kNever && state_ < SessionState::LoggedOn && heldDeadline_ != kNever) {
    stateDeadline_ = heldDeadline_ + (now - heldSince_);
  }
  idleDeadline_ = after(now, limits().idle());
  asio::post(socket_.get_executor(), detail::handlerIn(handlerMemory_, [self = shared_from_this()] {
               // A read that is under way writes into the framer, and looks for frames at its end.
               if (self->open_ && !self->isClosing() && !self->reading_ && !self->processing_) self->processFrames();
             }));
  armTimer();
}

void TcpSession::processFrame(std::span<const std::uint8_t> frame, Time now) {
  if (!bucket_.take(now)) {
    events_.onBytes(*this, FrameDirection::In, frame);
    endWith(CloseReason::RateLimit, SrvErrorDisconnected::DisconnectConn);
  } else if (side() == Side::Client && isBatch(frame)) {
    processBatch(frame);
  } else {
    deliver(frame);
  }
}

/// A batch counts as one frame against the rate: what it holds is bounded.
void TcpSession::processBatch(std::span<const std::uint8_t> frame) {
  ++counters_.batchesIn;
  const CommandHandle<> command = judge(frame);
  if (!command) return;
  // A handler that runs the event loop would come back here.
  std::vector<std::uint8_t> frames = std::exchange(unpackedFrames(), {});
  std::string_view wrong;
  DecodeError error;
  try {
    wrong = unpackBatch(static_cast<SrvCompressedCommands&>(*command), frames);
    error.kind = DecodeError::Kind::BadBatch;
  } catch (const std::bad_alloc&) {
    wrong = "cannot be unpacked for want of memory";
    error.kind = DecodeError::Kind::OutOfMemory;
  }
  if (wrong.empty()) {
    for (std::span<const std::uint8_t> rest = frames; !rest.empty() && open_ && !isClosing();) deliver(takeFrame(rest));
  } else {
    using Batch = CommandInfo<SrvCompressedCommands>;
    error.family = static_cast<std::uint8_t>(Batch::family);
    error.code = Batch::code;
    error.className = Batch::name;
    error.message = wrong;
    protocolError(CloseReason::BadCommand, error);
  }
  unpackedFrames() = std::move(frames);
}

/// The command of a frame, if this session may receive it now. Otherwise the host has heard why.
CommandHandle<> TcpSession::judge(std::span<const std::uint8_t> frame) {
  const std::span<const std::uint8_t> command = frame.subspan(kLengthSlot);
  DecodeError error;
  const CommandClass* named = resolveCommand(command, options_->policy, error);
  if (named != nullptr && !options_->allowed.allows(state_, named->family(), named->code())) {
    const bool loggedOn = state_ == SessionState::LoggedOn || state_ == SessionState::Seated;
    if (loggedOn && (options_->allowed.allows(SessionState::LoggedOn, named->family(), named->code()) ||
                     options_->allowed.allows(SessionState::Seated, named->family(), named->code()))) {
      ++counters_.refused;
      guarded([&] { events_.onRefused(*this, *named); });
      return {};
    }
    error.kind = DecodeError::Kind::NotAllowed;
    error.message.assign("is not allowed in the state ").append(toText(state_));
    named = nullptr;
  }
  if (named == nullptr) {
    protocolError(CloseReason::BadCommand, error);
    return {};
  }
  DecodeResult decoded = decodeCommand(*named, command, options_->policy);
  if (!decoded) protocolError(CloseReason::BadCommand, decoded.error);
  return std::move(decoded.command);
}

void TcpSession::deliver(std::span<const std::uint8_t> frame) {
  ++counters_.framesIn;
  events_.onBytes(*this, FrameDirection::In, frame);
  CommandHandle<> command = judge(frame);
  if (!command) return;
  const auto family = static_cast<ProcessorFamily>(frame[kLengthSlot + 1]);
  bucket_.charge(options_->costs.of(family, frame[kLengthSlot]) - 1u);
  // Whatever the object carried, it came from here.
  command->clearConnections();
  guarded([&] {
    if (id_.isValid()) command->setConnID(id_);
    events_.onCommand(*this, std::move(command));
  });
}

void TcpSession::protocolError(CloseReason reason, const DecodeError& error) {
  events_.onError(*this, reason, error);
  endWith(reason, SrvErrorDisconnected::BadCommand);
}

// Sending

bool TcpSession::send(const PokerCommandI& command) {
  if (isClosing()) return false;
  return queue(encodeCommand(command, scratchBuffer()), mayCompress(command));
}

bool TcpSession::sendFrame(std::span<const std::uint8_t> frame, bool canCompress) {
  if (isClosing()) return false;
  return queue(frame, canCompress);
}

bool TcpSession::queue(std::span<const std::uint8_t> frame, bool canCompress) {
  if (ended_) return false;
  if (queuedBytes() == 0) longestQueued_ = 0;
  longestQueued_ = std::max(longestQueued_, frame.size());
  // Packed, they may be less together than that one was.
  if (queuedBytes() + frame.size() > longestQueued_ + limits().outputHard) {
    closeNow(CloseReason::OutputOverflow);
    return false;
  }
  const bool staysAsItIs = !canCompress || isBatch(frame);
  if (staysAsItIs) pack();  // what was queued before it
  pending_.insert(pending_.end(), frame.begin(), frame.end());
  if (staysAsItIs) packed_ = pending_.size();
  ++counters_.framesOut;
  events_.onBytes(*this, FrameDirection::Out, frame);
  const bool much = queuedBytes() > limits().outputSoft;
  if (open_) {
    const Time now = Clock::now();
    if (keepAliveDue_ != kNever) keepAliveDue_ = now + limits().keepAlive;
    if (much && outputDeadline_ == kNever) {
      outputDeadline_ = after(now, limits().outputSoftTime);
      armTimer();
    }
  }
  if (much) {
    flush();
  } else if (!processing_) {
    flushSoon();
  }
  return true;
}

/// Makes a batch of what was queued since the last call, if that is smaller.
void TcpSession::pack() {
  const std::span<const std::uint8_t> frames = std::span(pending_).subspan(packed_);
  if (packs_ && frames.size() >= limits().batchFrom) {
    try {
      const std::span<const std::uint8_t> batch = packBatch(frames, batchBuffer());
      if (!batch.empty()) {
        pending_.resize(packed_);
        pending_.insert(pending_.end(), batch.begin(), batch.end());
        ++counters_.batchesOut;
      }
    } catch (const std::bad_alloc&) {
      // Then they go as they are.
    }
  }
  packed_ = pending_.size();
}

/// One write for all that is queued in this turn of the loop.
void TcpSession::flushSoon() {
  if (!open_ || writing_ || std::exchange(flushDue_, true)) return;
  asio::post(socket_.get_executor(), detail::handlerIn(handlerMemory_, [self = shared_from_this()] {
               self->flushDue_ = false;
               if (!self->processing_) self->flush();
             }));
}

void TcpSession::flush() {
  if (!open_ || writing_) return;
  if (pending_.empty()) {
    if (!isClosing() || processing_) return;
    if (peerEnded_) {
      closeNow(reason_);
    } else if (!shutDown_) {
      // Then the peer ends its own stream, or stateDeadline_ ends the wait for that.
      shutDown_ = true;
      std::error_code ignored;
      socket_.shutdown(asio::socket_base::shutdown_send, ignored);
    }
    return;
  }
  pack();
  std::swap(pending_, inFlight_);
  packed_ = 0;
  written_ = 0;
  write();
}

void TcpSession::write() {
  writing_ = true;
  socket_.async_write_some(asio::buffer(inFlight_.data() + written_, inFlight_.size() - written_),
                           detail::handlerIn(handlerMemory_, [self = shared_from_this()](const std::error_code& failure,
                                                                                         std::size_t written) {
                             self->onWrite(failure, written);
                           }));
}

void TcpSession::onWrite(const std::error_code& failure, std::size_t written) {
  writing_ = false;
  if (!open_) return;
  if (failure) {
    closeNow(CloseReason::ConnectionLost);
    return;
  }
  counters_.bytesOut += written;
  written_ += written;
  if (queuedBytes() <= limits().outputSoft) outputDeadline_ = kNever;
  if (written_ < inFlight_.size()) {
    write();
    return;
  }
  written_ = 0;
  inFlight_.clear();
  // What a burst needed is not kept for every session.
  if (inFlight_.capacity() > limits().outputSoft) std::vector<std::uint8_t>().swap(inFlight_);
  flush();
}

// Ending

template <class F>
void TcpSession::guarded(F&& call) {
  try {
    call();
  } catch (...) {
    events_.onHandlerFailed(*this, std::current_exception());
    endWith(CloseReason::HandlerFailed, SrvErrorDisconnected::InternalError);
  }
}

void TcpSession::disconnect(SrvErrorDisconnected::ErrorCode code) { endWith(CloseReason::ByHost, code); }

void TcpSession::endWith(CloseReason reason, SrvErrorDisconnected::ErrorCode code) {
  if (isClosing()) return;
  beginClosing(reason);
  if (side() == Side::Server) {
    try {
      queue(encodeCommand(*make<SrvErrorDisconnected>(code), scratchBuffer()), true);
    } catch (const std::bad_alloc&) {
      closeNow(reason);
      return;
    }
  }
  flush();
}

void TcpSession::closeAfter(const PokerCommandI& last) {
  if (isClosing()) return;
  const std::span<const std::uint8_t> frame = encodeCommand(last, scratchBuffer());
  beginClosing(CloseReason::ByHost);
  queue(frame, mayCompress(last));
  flush();
}

void TcpSession::closeAfterOutput() {
  if (isClosing()) return;
  beginClosing(CloseReason::ByHost);
  flush();
}

void TcpSession::close() { closeNow(CloseReason::ByHost); }

void TcpSession::beginClosing(CloseReason reason) {
  state_ = SessionState::Closing;
  reason_ = reason;
  held_ = false;
  frameDeadline_ = idleDeadline_ = resume_ = keepAliveDue_ = kNever;
  if (open_) stateDeadline_ = after(Clock::now(), limits().lastWords);
  // A pause of the rate limit ends here; inside processFrames() its end reads on.
  if (!processing_) read();
  armTimer();
}

void TcpSession::closeNow(CloseReason reason) {
  if (ended_) return;
  if (!isClosing()) reason_ = reason;
  ended_ = true;
  open_ = false;
  state_ = SessionState::Closing;
  std::error_code ignored;
  if (reason == CloseReason::OutputOverflow || reason == CloseReason::OutputStalled) {
    // The peer does not read: the system is not to keep our bytes for it either.
    socket_.set_option(asio::socket_base::linger(true, 0), ignored);
  }
  socket_.close(ignored);
  timer_.cancel();
  asio::post(socket_.get_executor(), [self = shared_from_this()] {
    if (self->abandoned_) return;
    self->events_.onClosed(*self, self->reason_);
    if (!self->abandoned_ && self->server_ != nullptr) self->server_->onSessionClosed(*self);
  });
}

// The server goes away, and with it perhaps the object that takes the events.
void TcpSession::abandon() {
  abandoned_ = true;
  server_ = nullptr;
  closeNow(CloseReason::ByHost);
}

// Deadlines: one timer, set to the earliest. A deadline that moves away leaves the timer as it is: it then comes early,
// finds nothing due and is set anew. So traffic costs no timer operation.

TcpSession::Time TcpSession::deadline() const {
  return std::min({stateDeadline_, frameDeadline_, idleDeadline_, outputDeadline_, resume_, keepAliveDue_});
}

void TcpSession::armTimer() {
  const Time earliest = deadline();
  if (ended_ || earliest >= armed_) return;
  armed_ = earliest;
  timer_.expires_at(earliest);
  timer_.async_wait(detail::handlerIn(handlerMemory_, [self = shared_from_this()](const std::error_code& failure) {
    if (!failure) self->onTimer();
  }));
}

void TcpSession::onTimer() {
  if (ended_) return;
  armed_ = kNever;
  const Time now = Clock::now();
  if (now >= outputDeadline_) {
    closeNow(CloseReason::OutputStalled);
    return;
  }
  if (now >= stateDeadline_) {
    if (!open_) {
      closeNow(CloseReason::ConnectFailed);
    } else if (isClosing()) {
      closeNow(reason_);
    } else if (state_ == SessionState::Connected) {
      endWith(CloseReason::HandShakeTimeout, SrvErrorDisconnected::DisconnectConn);
    } else {
      endWith(CloseReason::LogonTimeout, SrvErrorDisconnected::DisconnectConn);
    }
  } else if (now >= frameDeadline_) {
    endWith(CloseReason::FrameTimeout, SrvErrorDisconnected::DisconnectConn);
  } else if (now >= idleDeadline_) {
    endWith(CloseReason::Idle, SrvErrorDisconnected::DisconnectConn);
  } else if (now >= resume_) {
    resume_ = kNever;
    processFrames();
  }
  if (!ended_ && now >= keepAliveDue_) {
    keepAliveDue_ = now + limits().keepAlive;
    guarded([&] { events_.onKeepAliveDue(*this); });
  }
  armTimer();
}

}  // namespace poker
