#include <examples/holdem/client/lobby/LobbyPicture.h>

namespace poker::holdem {

const ServerTableEntry* LobbyPicture::table(std::uint32_t gameID) const {
  const auto place = tables_.find(gameID);
  return place == tables_.end() ? nullptr : &place->second;
}

void LobbyPicture::apply(const SrvServerInfo& command) {
  const ServerUpdateInfo& update = command.getInfo();
  if (update.version < version_) return;
  version_ = update.version;
  // A number may be given anew: the table that is listed now is the one that is there.
  for (const std::uint32_t gameID : update.removedTables) tables_.erase(gameID);
  for (const ServerTableEntry& table : update.tables) tables_[table.gameID] = table;
}

void LobbyPicture::apply(const SrvServerCountersInfo& command) {
  for (const auto& [key, value] : command.counters()) counters_.set(key, value);
}

void LobbyPicture::apply(const SrvNews& command) {
  for (auto number = static_cast<std::int32_t>(SrvNewsType::Welcome);
       number <= static_cast<std::int32_t>(SrvNewsType::Maintenance); ++number) {
    const char* text = command.news(number);
    if (text == nullptr) continue;
    if (*text != '\0') {
      news_[number] = text;
    } else {
      news_.erase(number);
    }
  }
}

}  // namespace poker::holdem
