#include <examples/holdem/client/rehearsal/ServerCommands.h>

#include <examples/holdem/client/rehearsal/Client.h>
#include <examples/holdem/shared/Protocol.h>
#include <hostkit/CommandHandle.h>
#include <hostkit/Results.h>

namespace poker::holdem {

bool ServerCommands::processCommand(PokerCommandTmpl<SrvCmdProcessorType>& command) {
  ResultsGuard guard(results_);
  command.process(results_, *this);
  guard.send(buffer_, [&](const EncodedCommand& answer) { client_.sendFrame(answer.frame); });
  return true;
}

void ServerCommands::onSrvHandShaked(Results&, SrvHandShaked&) { client_.becomeShakenHands(); }

void ServerCommands::onSrvKeepAliveReply(Results&, const SrvKeepAliveReply& reply) {
  client_.keepAliveAnswered(reply.sequenceNumber());
}

void ServerCommands::onSrvMaintenance(Results& results, const SrvMaintenance& notice) {
  if (notice.getID() != kMaintenanceBegins || !client_.settings().leavesAtMaintenance) return;
  CommandHandle<ClBye> bye = make<ClBye>();
  results.add(*bye);
  bye.detach();
}

}  // namespace poker::holdem
