#pragma once

#include <CommandProcessor/commands/session/SrvErrorDisconnected.h>
#include <CommandProcessor/types/TypeWrapper.h>
#include <hostkit/CommandCosts.h>
#include <hostkit/CommandHandle.h>
#include <hostkit/Decode.h>
#include <hostkit/HandlerMemory.h>
#include <hostkit/SessionLimits.h>
#include <hostkit/SessionState.h>
#include <hostkit/StreamFramer.h>

#include <asio/basic_stream_socket.hpp>
#include <asio/basic_waitable_timer.hpp>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>

#include <chrono>
#include <cstdint>
#include <exception>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace poker {

class TcpServer;
class TcpSession;

/// Why a session ended.
enum class CloseReason : std::uint8_t {
  ByHost,            ///< close(), disconnect() or closeAfter()
  ByPeer,            ///< the peer ended its stream
  ConnectFailed,     ///< client: no connection came about
  ConnectionLost,    ///< reset, unreachable, ...
  BadFrame,          ///< a length below 6 or above the limit
  BadCommand,        ///< a frame that is no command for this host in this state
  HandShakeTimeout,  ///< SessionLimits::handShake
  LogonTimeout,      ///< SessionLimits::logon
  FrameTimeout,      ///< SessionLimits::wholeFrame
  Idle,              ///< SessionLimits::idle()
  RateLimit,         ///< RateLimit::cut
  OutputStalled,     ///< SessionLimits::outputSoft for too long
  OutputOverflow,    ///< SessionLimits::outputHard
  HandlerFailed,     ///< one of the host's handlers threw
  OutOfMemory,       ///< there was none left to receive into
  Full,              ///< TcpServer: above its connection limit
};

/// "BadCommand" and so on.
std::string_view toText(CloseReason reason);

enum class FrameDirection : std::uint8_t { In, Out };

/// What a session tells its host. One object may serve any number of sessions, and must outlive them. All calls come
/// from the thread that runs the session's io_context. None comes from inside a call of the host's to the session, but
/// for onOpen() from start() and onBytes(Out). What onOpen(), onCommand(), onRefused() or onKeepAliveDue() throws ends
/// their session (onHandlerFailed), and no other.
class SessionEvents {
 public:
  virtual ~SessionEvents();

  /// The transport stands; nothing was received yet. The first event of a session, but for a client's failed connect.
  virtual void onOpen(TcpSession&) {}
  /// A whole, well-formed command that the session's state allows. On a server it carries the session's connection id.
  virtual void onCommand(TcpSession& session, CommandHandle<> command) = 0;
  /// A command was dropped that is allowed to logged-on users, but not to this one now: its seat may have been lost
  /// while the command travelled, so the session goes on. Any other command that the state does not allow ends the
  /// session.
  virtual void onRefused(TcpSession&, const CommandClass&) {}
  /// The peer broke the protocol (BadFrame, BadCommand). A server then sends SrvErrorDisconnected(BadCommand); onClosed
  /// follows on either side.
  virtual void onError(TcpSession&, CloseReason, const DecodeError&) {}
  /// A handler threw. A server then sends SrvErrorDisconnected(InternalError); onClosed follows on either side.
  virtual void onHandlerFailed(TcpSession&, std::exception_ptr) {}
  /// Client, hands shaken: nothing was sent for SessionLimits::keepAlive. Send a ClKeepAlive.
  virtual void onKeepAliveDue(TcpSession&) {}
  /// The last event of every session. The transport is closed.
  virtual void onClosed(TcpSession&, CloseReason) {}

  /// Every frame, length slot included: a whole one that came, before anything else is done with it, and one that is
  /// queued for sending; those inside of batches, and not the batches. For transcripts and recorders, which see passwords
  /// too. Must not call the session.
  virtual void onBytes(const TcpSession&, FrameDirection, std::span<const std::uint8_t>) {}
};

struct SessionCounters {
  std::uint64_t bytesIn = 0;
  std::uint64_t bytesOut = 0;   ///< given to the system
  std::uint64_t framesIn = 0;   ///< those inside of batches, and not the batches
  std::uint64_t framesOut = 0;  ///< queued; likewise
  std::uint64_t batchesIn = 0;
  std::uint64_t batchesOut = 0;
  std::uint64_t refused = 0;  ///< SessionEvents::onRefused
};

struct SessionOptions {
  Side side;
  SessionLimits limits;
  DecodePolicy policy;
  AllowedCommands allowed;
  CommandCosts costs = {};

  static SessionOptions forServer() {
    return {Side::Server, SessionLimits::forServer(), DecodePolicy::of(Side::Server), AllowedCommands::forServer()};
  }
  static SessionOptions forClient() {
    return {Side::Client, SessionLimits::forClient(), DecodePolicy::of(Side::Client), AllowedCommands::forClient()};
  }
};

/// One end of a TCP connection that speaks commands: bytes in, framed, judged, decoded, handed to the host; commands
/// out, encoded, queued within bounds, written together; deadlines on everything the peer may leave undone. What a server
/// has for a logged-on client in one turn of the loop goes out as a batch when that is smaller, and the client's session
/// unpacks it: neither host sees batches. The same class on both sides. What comes and goes in steady state allocates nothing.
///
/// Thread rule: one thread runs the io_context, and every call to its sessions is made on that thread, from an event or
/// from a function posted to the io_context. Other threads push commands into a queue (QueueReader). Several threads
/// with many sessions each have an io_context, a server and a connection table of their own.
///
/// A session lives while it is open, whoever else holds it.
class TcpSession : public std::enable_shared_from_this<TcpSession> {
 public:
  using Executor = asio::io_context::executor_type;
  using Socket = asio::basic_stream_socket<asio::ip::tcp, Executor>;

  /// Client: connects and starts. onOpen() follows, or onClosed(ConnectFailed).
  /// @param host     a name or an address
  /// @param options  shared by the host's sessions, see accept()
  static std::shared_ptr<TcpSession> connect(asio::io_context& context, const std::string& host, std::uint16_t port,
                                             std::shared_ptr<const SessionOptions> options, SessionEvents& events);
  /// For a host with a listener of its own (others use TcpServer): a session on a connected socket; start() it.
  /// @param id       what received commands are to carry; the invalid id for none
  static std::shared_ptr<TcpSession> accept(Socket socket, const ConnectionID& id,
                                            std::shared_ptr<const SessionOptions> options, SessionEvents& events);
  ~TcpSession();
  TcpSession(const TcpSession&) = delete;
  TcpSession& operator=(const TcpSession&) = delete;

  /// Begins to read. onOpen() comes from inside this call.
  void start();

  /// Encodes the command and queues its bytes; the caller keeps the command. Frames leave in the order of the calls.
  /// @return false when nothing is sent any more: the session is closing, or this command has overflowed its output
  /// @throws EncodeError     the command does not fit the wire; the session goes on
  /// @throws std::bad_alloc
  bool send(const PokerCommandI& command);
  /// As above for a finished frame, length slot included; one frame for many sessions is encoded once.
  /// @param canCompress  whether it may travel in a batch: what the command says of itself
  bool sendFrame(std::span<const std::uint8_t> frame, bool canCompress = true);

  /// For a handler whose answer takes time, on another thread for one: from now on nothing more is handed to the host and
  /// nothing more is read, so that commands are still answered in their order and the peer's waiting ones cost the
  /// system's buffers alone. The peer's deadlines stand still. Does nothing once the session is closing.
  void hold();
  /// Goes on; what has come meanwhile follows from the event loop.
  void proceed();
  bool isHeld() const { return held_; }

  /// Ends the session with a last SrvErrorDisconnected: stops listening to the peer, sends what is queued, then closes.
  /// All within SessionLimits::lastWords. For servers.
  void disconnect(SrvErrorDisconnected::ErrorCode code);
  /// As above with another last command: SrvBusy, ClBye, ...
  void closeAfter(const PokerCommandI& last);
  /// Sends what is queued, then closes, within SessionLimits::lastWords.
  void closeAfterOutput();
  /// Closes now. onClosed() follows from the event loop.
  void close();

  Side side() const { return options_->side; }
  const ConnectionID& id() const { return id_; }
  SessionState state() const { return state_; }
  /// Moves the session on (or back): chooses the allowed classes, the frame limits and the deadline. Does nothing once
  /// the session is closing; Closing itself cannot be set.
  void setState(SessionState state);

  bool isClosing() const { return state_ == SessionState::Closing; }
  const SessionCounters& counters() const { return counters_; }
  const SessionLimits& limits() const { return options_->limits; }
  /// Bytes that wait for the peer to take them.
  std::size_t queuedBytes() const { return pending_.size() + inFlight_.size() - written_; }
  /// For example "127.0.0.1:4000"; empty before the connection stands.
  const std::string& remoteAddress() const { return remoteAddress_; }
  /// The own end, likewise.
  const std::string& localAddress() const { return localAddress_; }

  /// A place for the host's own record of this session; released with the session.
  std::shared_ptr<void> hostData;

 private:
  friend TcpServer;

  using Clock = std::chrono::steady_clock;
  using Time = Clock::time_point;
  using Timer = asio::basic_waitable_timer<Clock, asio::wait_traits<Clock>, Executor>;
  using Endpoint = asio::ip::tcp::endpoint;

  TcpSession(Socket socket, const ConnectionID& id, std::shared_ptr<const SessionOptions> options,
             SessionEvents& events);

  void begin();
  void enter(SessionState state);
  void resolve(const std::string& host, std::uint16_t port);
  void connectTo(std::vector<Endpoint> endpoints, std::size_t index);

  void read();
  void onRead(const std::error_code& failure, std::size_t received);
  void processFrames();
  void processFrame(std::span<const std::uint8_t> frame, Time now);
  void processBatch(std::span<const std::uint8_t> frame);
  CommandHandle<> judge(std::span<const std::uint8_t> frame);
  void deliver(std::span<const std::uint8_t> frame);
  void protocolError(CloseReason reason, const DecodeError& error);

  bool queue(std::span<const std::uint8_t> frame, bool canCompress);
  void pack();
  void flushSoon();
  void flush();
  void write();
  void onWrite(const std::error_code& failure, std::size_t written);

  template <class F>
  void guarded(F&& call);
  void beginClosing(CloseReason reason);
  void endWith(CloseReason reason, SrvErrorDisconnected::ErrorCode code);
  void closeNow(CloseReason reason);
  void abandon();

  Time deadline() const;
  void armTimer();
  void onTimer();

  std::shared_ptr<const SessionOptions> options_;
  SessionEvents& events_;
  TcpServer* server_ = nullptr;
  detail::HandlerMemory handlerMemory_;
  Socket socket_;
  Timer timer_;
  ConnectionID id_;
  std::string remoteAddress_;
  std::string localAddress_;
  SessionState state_ = SessionState::Connected;
  CloseReason reason_ = CloseReason::ByHost;
  SessionCounters counters_;

  StreamFramer framer_;
  TokenBucket bucket_;
  std::vector<std::uint8_t> pending_;   // queued, of which
  std::size_t packed_ = 0;              // so many bytes stay as they are
  std::vector<std::uint8_t> inFlight_;  // given to the system, of which
  std::size_t written_ = 0;             // so many bytes are through
  std::size_t longestQueued_ = 0;       // of the frames since nothing was queued
  std::size_t thrownAway_ = 0;          // bytes that came when nothing was received any more

  bool open_ = false;        // the transport stands
  bool ended_ = false;       // closed for good, and onClosed() on its way
  bool abandoned_ = false;   // the server is gone: no more events
  bool reading_ = false;     // a read is under way
  bool writing_ = false;     // a write is under way
  bool flushDue_ = false;    // what is queued goes out later in this turn of the loop
  bool processing_ = false;  // frames are being handed to the host: what is sent meanwhile leaves together
  bool peerEnded_ = false;   // the end of the peer's stream has come
  bool shutDown_ = false;    // the end of ours is sent
  bool packs_ = false;       // the peer takes batches by now
  bool held_ = false;        // hold() without proceed()
  Time heldSince_;
  Time heldDeadline_ = Time::max();  // stateDeadline_ as it was then

  // Deadlines; Time::max() for none.
  Time armed_ = Time::max();
  Time stateDeadline_ = Time::max();  // connect, hand-shake, logon, last words
  Time frameDeadline_ = Time::max();
  Time idleDeadline_ = Time::max();
  Time outputDeadline_ = Time::max();
  Time resume_ = Time::max();  // reading pauses until then
  Time keepAliveDue_ = Time::max();
};

}  // namespace poker
