// The one handler with a body: it answers from a command's pool, so it stands above the processors' own folder.

#include <CommandProcessor/commands/PooledObject.h>
#include <CommandProcessor/commands/session/ClKeepAlive.h>
#include <CommandProcessor/commands/session/SrvKeepAliveReply.h>
#include <CommandProcessor/core/ClientCmdProcessor.h>
#include <CommandProcessor/core/CommandsResult.h>

namespace poker {

void ClientCmdProcessor::onClKeepAlive(Results& results, ClKeepAlive& command) {
  PooledObject<SrvKeepAliveReply> reply;
  reply->init(command.sequenceNumber());
  reply->setConnID(command.getConnID());
  results.add(*reply);
  reply.keep();
}

}  // namespace poker
