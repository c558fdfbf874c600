#pragma once

#include <CommandProcessor/core/PokerCommandI.h>

namespace poker {

/// A command with the set of connections that it concerns.
class COMMANDPROCESSOR_API PokerCommand : public PokerCommandI {
 public:
  const ConnectionID& getConnID() const override;
  void setConnID(const ConnectionID& id) override;
  void clearConnections() override;
  ConnectionsSet& getConnections() override;
  void addConnections(const ConnectionsSet& ids) override;
  void removeConnection(const ConnectionID& id) override;
  bool isFinalCommand() const override;

  /// Empties the connection set, as every command's own init() does first.
  void init() {
    requireInUse("init()");
    connections_.clear();
  }

 protected:
  PokerCommand() = default;
  PokerCommand(const PokerCommand&) = default;
  PokerCommand& operator=(const PokerCommand&) = default;
  ~PokerCommand() override;

 private:
  ConnectionsSet connections_;
};

}  // namespace poker
