#pragma once

#include <CommandProcessor/commands/AllCommands.h>
#include <CommandProcessor/core/ClientCmdProcessor.h>
#include <CommandProcessor/wire/SerializeCommandBuf.h>
#include <hostkit/CommandHandle.h>
#include <hostkit/Results.h>

#include <ctime>
#include <utility>

namespace poker::holdem {

class Server;

/// What this server does when a client's command arrives: a handler a command. ClKeepAlive is answered by the base class.
class ClientCommands final : public ClientCmdProcessor {
 public:
  /// @param server  must outlive this object
  explicit ClientCommands(Server& server) : server_(server) {}

  /// Calls the command's handler and sends what it answers.
  /// @return true
  bool processCommand(PokerCommandTmpl<ClientCmdProcessorType>& command) override;

  void onClHandShake(Results& results, ClHandShake& request) override;
  void onClPing(Results& results, ClPing& request) override;
  void onClBye(Results& results, ClBye& request) override;

 private:
  /// Puts a T for the request's sender into the results.
  template <class T, class... Args>
  static void answer(Results& results, const PokerCommandI& request, Args&&... args) {
    CommandHandle<T> command = make<T>(std::forward<Args>(args)...);
    command->setConnID(request.getConnID());
    results.add(*command);
    command.detach();
  }

  Server& server_;
  Results results_;
  SerializeCommandBuf buffer_{256};
  std::time_t arrival_ = 0;      // of the command in hand
  bool endsConnection_ = false;  // once the answers to the command in hand are out
};

}  // namespace poker::holdem
