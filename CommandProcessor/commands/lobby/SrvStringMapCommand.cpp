#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/lobby/SrvStringMapCommand.h>

namespace poker {

void SrvStringMapCommand::init() {
  clearConnections();
  pairs_.clear();
}

void SrvStringMapCommand::addPair(const char* key, const char* value) {
  pairs_.set(key != nullptr ? key : "", value != nullptr ? value : "");
}

const char* SrvStringMapCommand::getValue(const char* key) const {
  const auto found = pairs_.find(key != nullptr ? key : "");
  return found != pairs_.end() ? found->second.c_str() : nullptr;
}

void SrvStringMapCommand::fields(auto& self, auto&& field) { field("pairs", map<std::uint8_t>(self.pairs_)); }

template class Command<SrvStringMapCommand>;
template class CachedCmdCreator<SrvStringMapCommand>;

}  // namespace poker
