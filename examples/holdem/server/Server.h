#pragma once

#include <CommandProcessor/core/CmdDispatcher.h>
#include <LogUtil/Log.h>
#include <examples/holdem/server/ClientCommands.h>
#include <examples/holdem/server/ClientTourCommands.h>
#include <examples/holdem/server/House.h>
#include <examples/holdem/server/ServerSettings.h>
#include <examples/holdem/server/Totals.h>
#include <examples/holdem/server/capture/FrameTap.h>
#include <examples/holdem/shared/Transcript.h>
#include <hostkit/TcpServer.h>

#include <asio/steady_timer.hpp>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <optional>
#include <span>
#include <string_view>

namespace poker::holdem {

/// The game server: takes connections, dispatches what clients send to ClientCommands, and ends in order. All calls come
/// from the thread that runs the io_context.
///
/// A handler that throws leaves a table in an unknown state, while the bank holds what is true: the server then stops the
/// io_context (failure()), to be started again.
class Server final : private SessionEvents, private Connections {
 public:
  /// Listens at once; connections are taken from start() on.
  /// @param transcript  null for none; must outlive the server
  /// @param observer    of all frames; as for the transcript
  /// @throws std::system_error  for example when the port is taken
  /// @throws BankError
  Server(asio::io_context& context, ServerSettings settings, Transcript* transcript, FrameObserver* observer = nullptr);

  /// @param ended  called once the server has drained, whoever began that
  void start(std::function<void()> ended);
  /// What a handler threw; null as long as none did.
  const std::exception_ptr& failure() const { return failure_; }
  /// What the system chose, where the settings left it to it.
  std::uint16_t port() const { return tcp_.port(); }
  const ServerSettings& settings() const { return settings_; }
  const Totals& totals() const { return totals_; }
  House& house() { return house_; }

  /// Tells all clients, and those that come later, that there will be maintenance; nothing else changes.
  void announceMaintenance();
  bool isMaintenanceAnnounced() const { return announced_; }

  /// Takes no more connections and tells all clients that maintenance begins. When the hands that are played are over, and
  /// after ServerSettings::grace, ends the sessions that are left. Asked a second time, ends them now: what is played then
  /// has not happened.
  void drain();
  bool isDraining() const { return draining_; }
  /// Stops all tournaments that have started, or lets them go on if it has stopped them.
  void toggleTournaments();

  // For the handlers of commands. A connection that is not there any more is passed over.

  /// Serves the connection from now on.
  /// @return false when there is no room for it
  bool admit(const ConnectionID& id, std::uint32_t version);
  /// Ends the connection without a further word, once what is queued for it is out. Its place is free at once.
  void finish(const ConnectionID& id);

 private:
  /// What the server knows of a client that it serves.
  struct Guest {
    std::uint32_t version;
  };

  void onOpen(TcpSession& session) override;
  void onCommand(TcpSession& session, CommandHandle<> command) override;
  void onError(TcpSession& session, CloseReason reason, const DecodeError& error) override;
  void onHandlerFailed(TcpSession& session, std::exception_ptr failure) override;
  void onClosed(TcpSession& session, CloseReason reason) override;
  void onBytes(const TcpSession& session, FrameDirection direction, std::span<const std::uint8_t> frame) override;

  void sendFrame(const ConnectionID& id, std::span<const std::uint8_t> frame) override;
  void setState(const ConnectionID& id, SessionState state) override;
  void disconnect(const ConnectionID& id, SrvErrorDisconnected::ErrorCode code) override;
  void hold(const ConnectionID& id) override;
  void proceed(const ConnectionID& id) override;

  static ServerOptions optionsFrom(const ServerSettings& settings);
  void leave(TcpSession& session);
  void beginDraining(std::chrono::milliseconds grace);
  void endGrace();
  void endSessions();

  ServerSettings settings_;
  Transcript* transcript_;
  Log& log_;
  asio::io_context& context_;
  House house_;
  std::optional<FrameTap> tap_;  // when somebody observes
  ClientCommands clientCommands_;
  ClientMiscCommands clientMiscCommands_;
  ClientTourCommands clientTourCommands_;
  CmdDispatcher dispatcher_;
  TcpServer tcp_;
  asio::steady_timer grace_;
  Totals totals_;
  std::size_t guests_ = 0;
  bool announced_ = false;
  bool tournamentsStopped_ = false;
  bool draining_ = false;
  bool graceEnded_ = false;
  bool tablesClosed_ = false;
  bool endingSessions_ = false;
  std::function<void()> ended_;
  std::exception_ptr failure_;
};

}  // namespace poker::holdem
