#include <examples/holdem/server/ClientCommands.h>

#include <examples/holdem/server/Server.h>
#include <examples/holdem/shared/Protocol.h>

namespace poker::holdem {

bool ClientCommands::processCommand(PokerCommandTmpl<ClientCmdProcessorType>& command) {
  arrival_ = std::time(nullptr);
  endsConnection_ = false;
  const ConnectionID sender = command.getConnID();
  ResultsGuard guard(results_);
  command.process(results_, *this);
  guard.send(
      buffer_, [&](const EncodedCommand& reply, const ConnectionID& to) { server_.sendFrame(to, reply.frame); },
      [&](const EncodedCommand& reply) { server_.sendFrame(sender, reply.frame); });
  if (endsConnection_) server_.finish(sender);
  return true;
}

void ClientCommands::onClHandShake(Results& results, ClHandShake& request) {
  const ServerSettings& settings = server_.settings();
  endsConnection_ = true;
  if (server_.isDraining()) {
    answer<SrvMaintenance>(results, request, settings.farewell, kMaintenanceBegins);
  } else if (settings.movedTo) {
    answer<ServiceNotAvailable>(results, request, settings.movedTo->toString().c_str());
  } else if (request.version() < settings.minimumVersion) {
    answer<SrvNewClientVersionAvail>(results, request, SrvNewClientVersionAvail::ForcedUpgrade,
                                     SrvNewClientVersionAvail::StandardAndCustomText, settings.versionText.c_str());
  } else if (!server_.admit(request.getConnID(), request.version())) {
    answer<SrvBusy>(results, request);
  } else {
    endsConnection_ = false;
    answer<SrvHandShaked>(results, request);
    if (request.version() < settings.currentVersion) {
      answer<SrvNewClientVersionAvail>(results, request, SrvNewClientVersionAvail::OptionalUpgrade,
                                       SrvNewClientVersionAvail::StandardAndCustomText, settings.versionText.c_str());
    }
    if (server_.isMaintenanceAnnounced()) {
      answer<SrvMaintenance>(results, request, settings.announcement, kMaintenanceAnnounced);
    }
  }
}

void ClientCommands::onClPing(Results& results, ClPing& request) {
  answer<SrvPing>(results, request, static_cast<std::int32_t>(arrival_));
}

void ClientCommands::onClBye(Results&, ClBye&) { endsConnection_ = true; }

}  // namespace poker::holdem
