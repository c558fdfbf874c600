#pragma once

#include <CommandProcessor/commands/AllCommands.h>
#include <CommandProcessor/core/CommandsResult.h>
#include <CommandProcessor/core/SrvCmdProcessor.h>
#include <CommandProcessor/wire/SerializeCommandBuf.h>

namespace poker::holdem {

class Client;

/// What the client does by itself when a command of the server arrives: a handler a command. The person at the client, or
/// the script in its place, sees the command afterwards.
class ServerCommands final : public SrvCmdProcessor {
 public:
  /// @param client  must outlive this object
  explicit ServerCommands(Client& client) : client_(client) {}

  /// Calls the command's handler and sends what it answers.
  /// @return true
  bool processCommand(PokerCommandTmpl<SrvCmdProcessorType>& command) override;

  void onSrvHandShaked(Results& results, SrvHandShaked& notice) override;
  void onSrvKeepAliveReply(Results& results, const SrvKeepAliveReply& reply) override;
  void onSrvMaintenance(Results& results, const SrvMaintenance& notice) override;

 private:
  Client& client_;
  Results results_;
  SerializeCommandBuf buffer_{256};
};

}  // namespace poker::holdem
