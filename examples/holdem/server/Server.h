#pragma once

#include <CommandProcessor/core/CmdDispatcher.h>
#include <LogUtil/Log.h>
#include <examples/holdem/server/ClientCommands.h>
#include <examples/holdem/server/ServerSettings.h>
#include <examples/holdem/server/Totals.h>
#include <examples/holdem/shared/Transcript.h>
#include <hostkit/TcpServer.h>

#include <asio/steady_timer.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string_view>

namespace poker::holdem {

/// The game server: takes connections, dispatches what clients send to ClientCommands, and ends in order. All calls come
/// from the thread that runs the io_context.
class Server final : private SessionEvents {
 public:
  /// Listens at once; connections are taken from start() on.
  /// @param transcript  null for none; must outlive the server
  /// @throws std::system_error  for example when the port is taken
  Server(asio::io_context& context, ServerSettings settings, Transcript* transcript);

  void start();
  /// What the system chose, where the settings left it to it.
  std::uint16_t port() const { return tcp_.port(); }
  const ServerSettings& settings() const { return settings_; }
  const Totals& totals() const { return totals_; }

  /// Tells all clients, and those that come later, that there will be maintenance; nothing else changes.
  void announceMaintenance();
  bool isMaintenanceAnnounced() const { return announced_; }

  /// Takes no more connections and tells all clients that maintenance begins; after ServerSettings::grace, or when asked a
  /// second time, ends those that are left. `done` is called once all are gone.
  void drain(std::function<void()> done);
  bool isDraining() const { return draining_; }

  // For the handlers of commands. A connection that is not there any more is passed over.

  /// Serves the connection from now on.
  /// @return false when there is no room for it
  bool admit(const ConnectionID& id, std::uint32_t version);
  void sendFrame(const ConnectionID& id, std::span<const std::uint8_t> frame);
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

  static ServerOptions optionsFrom(const ServerSettings& settings);
  void leave(TcpSession& session);
  void endGrace();

  ServerSettings settings_;
  Transcript* transcript_;
  Log& log_;
  ClientCommands clientCommands_;
  CmdDispatcher dispatcher_;
  TcpServer tcp_;
  asio::steady_timer grace_;
  Totals totals_;
  std::size_t guests_ = 0;
  bool announced_ = false;
  bool draining_ = false;
  std::function<void()> drained_;
};

}  // namespace poker::holdem
