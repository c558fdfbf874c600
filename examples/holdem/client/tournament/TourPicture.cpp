#include <examples/holdem/client/tournament/TourPicture.h>

#include <algorithm>
#include <tuple>

namespace poker::holdem {

namespace {

auto fieldsOf(const MultiTourTableEntry& it) {
  return std::tie(it.tableID, it.players, it.smallestStack, it.largestStack, it.name);
}
auto fieldsOf(const MultiTourPlayerEntry& it) {
  return std::tie(it.tableID, it.player.name, it.player.playerID, it.player.city);
}
auto fieldsOf(const PrizeSchemeInfoRow& it) { return std::tie(it.place, it.type, it.amount); }

template <class Rows>
bool sameRows(const Rows& a, const Rows& b) {
  const auto same = [](const auto& x, const auto& y) { return fieldsOf(x.second) == fieldsOf(y.second); };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), same);
}

/// Whether a part of this version is as new as the one that is here, whose version it then becomes.
bool isNews(std::uint32_t version, std::uint32_t& here) {
  if (version < here) return false;
  here = version;
  return true;
}

// A number or a name may be there anew: what is listed now is what is there.

void merge(const MultiTourTablesInfo& update, TourPicture::Tables& tables) {
  for (const std::uint32_t tableID : update.removedTables) tables.erase(tableID);
  for (const MultiTourTableEntry& table : update.tables) tables[table.tableID] = table;
}

void merge(const MultiTourPlayersInfo& update, TourPicture::Players& players) {
  for (const std::string& name : update.removedPlayers) players.erase(name);
  for (const MultiTourPlayerEntry& entry : update.players) players[entry.player.name] = entry;
}

void merge(const MultiTourTextInfo& update, TourPicture::Texts& texts) {
  for (const auto& [key, text] : update.texts) texts[key] = text;
}

}  // namespace

const std::string& TourPicture::text(MultiTourText key) const {
  static const std::string kNone;
  const auto place = texts_.find(key);
  return place == texts_.end() ? kNone : place->second;
}

void TourPicture::apply(const SrvMultiTourInitialize& command) {
  if (command.tourID() != tournamentID_) return;
  if (isNews(command.getTablesInfo().version, tablesVersion_)) {
    tables_.clear();
    merge(command.getTablesInfo(), tables_);
  }
  if (isNews(command.getPlayersInfo().version, playersVersion_)) {
    players_.clear();
    merge(command.getPlayersInfo(), players_);
  }
  if (isNews(command.getTextInfo().version, textVersion_)) {
    texts_.clear();
    merge(command.getTextInfo(), texts_);
  }
  if (isNews(command.prizeVersion(), prizesVersion_)) prizes_ = command.getPrizes();
  if (isNews(command.getFundVersion(), fundVersion_)) fund_ = command.getFundInfo();
  isWhole_ = true;
}

void TourPicture::apply(const SrvUpdateTables& command) {
  if (command.tourID() != tournamentID_ || !isNews(command.getTablesInfo().version, tablesVersion_)) return;
  merge(command.getTablesInfo(), tables_);
}

void TourPicture::apply(const SrvUpdatePlayers& command) {
  if (command.tourID() != tournamentID_ || !isNews(command.getPlayersInfo().version, playersVersion_)) return;
  merge(command.getPlayersInfo(), players_);
}

void TourPicture::apply(const SrvUpdateText& command) {
  if (command.tourID() != tournamentID_ || !isNews(command.getTextInfo().version, textVersion_)) return;
  merge(command.getTextInfo(), texts_);
}

void TourPicture::apply(const SrvUpdatePrizeDescr& command) {
  if (command.tourID() != tournamentID_ || !isNews(command.prizeVersion(), prizesVersion_)) return;
  prizes_ = command.getPrizes();
}

void TourPicture::apply(const SrvUpdatePrizeFund& command) {
  if (command.tourID() != tournamentID_ || !isNews(command.getVersion(), fundVersion_)) return;
  fund_ = command.getFundInfo();
}

void TourPicture::apply(const SrvMultiTourDetailedInfo& command) {
  if (command.tourID() != tournamentID_) return;
  summary_ = Summary{command.getMoneyInfo(), command.getStartInfo(), command.getTourInfo(), command.ownTable(),
                     command.registered()};
}

bool operator==(const TourPicture& a, const TourPicture& b) {
  return a.tournamentID_ == b.tournamentID_ && sameRows(a.tables_, b.tables_) && sameRows(a.players_, b.players_) &&
         a.texts_ == b.texts_ && a.prizes_.isFinal() == b.prizes_.isFinal() &&
         sameRows(a.prizes_.rows(), b.prizes_.rows()) && a.fund_.texts == b.fund_.texts &&
         a.fund_.summary == b.fund_.summary;
}

const TourListEntry* TourListPicture::tournament(std::uint32_t tournamentID) const {
  const auto place = tournaments_.find(tournamentID);
  return place == tournaments_.end() ? nullptr : &place->second;
}

void TourListPicture::apply(const SrvTournamentsInfo& command) {
  const TournamentsInfo& update = command.getInfo();
  if (update.type != type_ || !isNews(update.version, version_)) return;
  for (const std::uint32_t tournamentID : update.removedTournaments) tournaments_.erase(tournamentID);
  for (const TourListEntry& tournament : update.tournaments) tournaments_[tournament.tournamentID] = tournament;
}

}  // namespace poker::holdem
