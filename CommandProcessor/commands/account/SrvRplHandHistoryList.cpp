#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/account/SrvRplHandHistoryList.h>

namespace poker {

void SrvRplHandHistoryList::init(const std::vector<std::uint32_t>& games) {
  clearConnections();
  games_ = games;
}

void SrvRplHandHistoryList::add(std::uint32_t game) { games_.push_back(game); }

void SrvRplHandHistoryList::fields(auto& self, auto&& field) { field("games", list<std::uint32_t>(self.games_)); }

template class Command<SrvRplHandHistoryList>;
template class CachedCmdCreator<SrvRplHandHistoryList>;

}  // namespace poker
