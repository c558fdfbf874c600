#include <CommandProcessor/core/PokerCommand.h>

namespace poker {

namespace {
constinit const ConnectionID kNoConnection;
}

PokerCommand::~PokerCommand() = default;

const ConnectionID& PokerCommand::getConnID() const {
  requireInUse("getConnID()");
  return connections_.empty() ? kNoConnection : *connections_.begin();
}

void PokerCommand::setConnID(const ConnectionID& id) {
  requireInUse("setConnID()");
  connections_.insert(id);
}

void PokerCommand::clearConnections() {
  requireInUse("clearConnections()");
  connections_.clear();
}

ConnectionsSet& PokerCommand::getConnections() {
  requireInUse("getConnections()");
  return connections_;
}

void PokerCommand::addConnections(const ConnectionsSet& ids) {
  requireInUse("addConnections()");
  connections_.insert(ids);
}

void PokerCommand::removeConnection(const ConnectionID& id) {
  requireInUse("removeConnection()");
  connections_.erase(id);
}

bool PokerCommand::isFinalCommand() const { return false; }

}  // namespace poker
