#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/SrvRplHandHistory.h>

namespace poker {

void SrvRplHandHistory::init(const StringVector& games) {
  clearConnections();
  games_ = games;
}

void SrvRplHandHistory::add(const std::string& game) { games_.push_back(game); }

void SrvRplHandHistory::fields(auto& self, auto&& field) { field("games", self.games_); }

template class Command<SrvRplHandHistory>;
template class CachedCmdCreator<SrvRplHandHistory>;

}  // namespace poker
