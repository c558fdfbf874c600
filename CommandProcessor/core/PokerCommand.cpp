#include <CommandProcessor/core/PokerCommand.h>

namespace poker {

namespace {
constinit const ConnectionID kNoConnection;
}

PokerCommand::~PokerCommand() = default;

const ConnectionID& PokerCommand::getConnID() const {
  return connections_.empty() ? kNoConnection : *connections_.begin();
}

void PokerCommand::setConnID(const ConnectionID& id) { connections_.insert(id); }

void PokerCommand::clearConnections() { connections_.clear(); }

ConnectionsSet& PokerCommand::getConnections() { return connections_; }

void PokerCommand::addConnections(const ConnectionsSet& ids) { connections_.insert(ids); }

void PokerCommand::removeConnection(const ConnectionID& id) { connections_.erase(id); }

bool PokerCommand::isFinalCommand() const { return false; }

}  // namespace poker
