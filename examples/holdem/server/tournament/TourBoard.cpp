#include <examples/holdem/server/tournament/TourBoard.h>

#include <algorithm>
#include <tuple>

namespace poker::holdem {

namespace {

auto tied(const MultiTourTableEntry& table) {
  return std::tie(table.tableID, table.players, table.smallestStack, table.largestStack, table.name);
}

auto tied(const MultiTourPlayerEntry& entry) {
  return std::tie(entry.tableID, entry.player.name, entry.player.playerID, entry.player.city);
}

auto tied(const PrizeSchemeInfoRow& row) { return std::tie(row.place, row.type, row.amount); }

constexpr auto kSaySame = [](const auto& a, const auto& b) { return tied(a) == tied(b); };

bool saySame(const PrizeSchemeInfoMap& a, const PrizeSchemeInfoMap& b) {
  return a.isFinal() == b.isFinal() &&
         std::equal(a.rows().begin(), a.rows().end(), b.rows().begin(), b.rows().end(),
                    [](const auto& x, const auto& y) { return kSaySame(x.second, y.second); });
}

bool saySame(const PrizeFundInfo& a, const PrizeFundInfo& b) { return a.texts == b.texts && a.summary == b.summary; }

}  // namespace

void TourBoard::setTable(const MultiTourTableEntry& table) { tables_.set(table.tableID, table, kSaySame); }

void TourBoard::setPlayer(const MultiTourPlayerEntry& player) { players_.set(player.player.name, player, kSaySame); }

void TourBoard::setPrizes(const PrizeSchemeInfoMap& prizes) {
  if (saySame(prizes_, prizes)) return;
  prizes_ = prizes;
  ++prizesVersion_;
}

void TourBoard::setFund(const PrizeFundInfo& fund) {
  if (saySame(fund_, fund)) return;
  fund_ = fund;
  ++fundVersion_;
}

TourBoard::Versions TourBoard::versions() const {
  return {tables_.version(), players_.version(), texts_.version(), prizesVersion_, fundVersion_};
}

void TourBoard::tellAll(Outbox& outbox, const ConnectionID& client) const {
  outbox.add<SrvMultiTourInitialize>(client, tablesSince(0), playersSince(0), textSince(0), tourID_, prizes_, fund_,
                                     prizesVersion_, fundVersion_);
}

bool TourBoard::knows(const Versions& versions) const {
  const auto isOwn = [](std::uint32_t version, std::uint32_t newest) { return version != 0 && version <= newest; };
  const Versions now = this->versions();
  return isOwn(versions.tables, now.tables) && isOwn(versions.players, now.players) && isOwn(versions.text, now.text) &&
         isOwn(versions.prizes, now.prizes) && isOwn(versions.fund, now.fund);
}

std::size_t TourBoard::changes(const Versions& known) const {
  std::size_t count = known.prizes != prizesVersion_ ? prizes_.rows().size() : 0;
  const auto add = [&](const auto&...) { ++count; };
  tables_.forEachChanged(known.tables, add);
  tables_.forEachRemoved(known.tables, add);
  players_.forEachChanged(known.players, add);
  players_.forEachRemoved(known.players, add);
  return count;
}

bool TourBoard::tellChanges(Outbox& outbox, const ConnectionID& client, const Versions& known) const {
  const Versions now = versions();
  if (known.tables != now.tables) outbox.add<SrvUpdateTables>(client, tablesSince(known.tables), tourID_);
  if (known.players != now.players) outbox.add<SrvUpdatePlayers>(client, playersSince(known.players), tourID_);
  if (known.text != now.text) outbox.add<SrvUpdateText>(client, textSince(known.text), tourID_);
  if (known.prizes != now.prizes) outbox.add<SrvUpdatePrizeDescr>(client, prizes_, tourID_, now.prizes);
  if (known.fund != now.fund) outbox.add<SrvUpdatePrizeFund>(client, now.fund, fund_, tourID_);
  return known != now;
}

const MultiTourTablesInfo& TourBoard::tablesSince(std::uint32_t version) const {
  tablesInfo_.tables.clear();
  tablesInfo_.removedTables.clear();
  tablesInfo_.version = tables_.version();
  tables_.forEachChanged(version,
                         [&](std::uint32_t, const MultiTourTableEntry& table) { tablesInfo_.tables.push_back(table); });
  tables_.forEachRemoved(version, [&](std::uint32_t tableID) { tablesInfo_.removedTables.insert(tableID); });
  return tablesInfo_;
}

const MultiTourPlayersInfo& TourBoard::playersSince(std::uint32_t version) const {
  playersInfo_.players.clear();
  playersInfo_.removedPlayers.clear();
  playersInfo_.version = players_.version();
  players_.forEachChanged(
      version, [&](const std::string&, const MultiTourPlayerEntry& player) { playersInfo_.players.push_back(player); });
  // The set takes names in its own order cheaply, and thousands may be out.
  names_.clear();
  players_.forEachRemoved(version, [&](const std::string& name) { names_.push_back(&name); });
  std::sort(names_.begin(), names_.end(), [](const auto* a, const auto* b) { return *a < *b; });
  for (const std::string* name : names_) playersInfo_.removedPlayers.insert(*name);
  return playersInfo_;
}

const MultiTourTextInfo& TourBoard::textSince(std::uint32_t version) const {
  textInfo_.texts.clear();
  textInfo_.version = texts_.version();
  texts_.forEachChanged(version, [&](MultiTourText key, const std::string& text) { textInfo_.texts.set(key, text); });
  return textInfo_;
}

}  // namespace poker::holdem
