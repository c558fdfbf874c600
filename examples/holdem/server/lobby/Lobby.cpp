#include <examples/holdem/server/lobby/Lobby.h>

#include <examples/holdem/shared/Protocol.h>

#include <algorithm>
#include <utility>

namespace poker::holdem {

namespace {

constexpr auto kTickTime = std::chrono::seconds(1);

}  // namespace

Lobby::Lobby(asio::io_context& context, const WaitLists::Tables& tables, const WaitLists& waiting, Outbox& outbox,
             VersionNumbers::Reserve reserveNumbers)
    : waiting_(waiting), outbox_(outbox), numbers_(std::move(reserveNumbers)), list_(numbers_), timer_(context) {
  for (const auto& table : tables) shown_.emplace_back().table = table.get();
}

// Who looks

/// The first one who looks is told all there is: of what changed before, nothing is left to be told.
void Lobby::beginToLook() {
  if (isWatched()) return;
  hasChanged_ = newsChanged_ = false;
  waitChanges_ = waiting_.changes();
  nextTick_ = Clock::now() + kTickTime;
}

void Lobby::lookAtList(const ConnectionID& client, std::uint32_t version) {
  beginToLook();
  refreshList();
  listViewers_[client.value()] = list_.version();
  list_.changesSince(version, update_);
  outbox_.add<SrvServerInfo>(client, update_);
  auto counts = make<SrvServerCountersInfo>();
  counts->counters() = counters();
  countersDiffer_ = countersDiffer_ || counters_ != toldCounters_;
  ConnectionsSet to;
  to.insert(client);
  outbox_.put(std::move(counts), to);
  outbox_.put(news(), to);
}

void Lobby::lookAtTable(const ConnectionID& client, std::uint32_t gameID, std::uint32_t version) {
  const auto place = std::find_if(shown_.begin(), shown_.end(),
                                  [&](const Shown& shown) { return shown.table->settings().gameID == gameID; });
  if (place == shown_.end()) return;
  beginToLook();
  lookAwayFromTable(client);
  detailsOf_[client.value()] = &*place;
  refreshDetails(*place);
  place->viewers[client.value()] = place->details.version;
  if (version == place->details.version) return;
  numbers_.tell();
  outbox_.add<SrvGameInfo>(client, place->details);
}

void Lobby::lookAwayFromTable(const ConnectionID& client) {
  const auto looksAt = detailsOf_.extract(client.value());
  if (looksAt) looksAt.mapped()->viewers.erase(client.value());
}

void Lobby::addViewers(ConnectionsSet& all) const {
  for (const auto& [client, version] : listViewers_) all.insert(ConnectionID(client));
  for (const auto& [client, shown] : detailsOf_) all.insert(ConnectionID(client));
}

void Lobby::forget(const ConnectionID& client) {
  lookAwayFromList(client);
  lookAwayFromTable(client);
}

// What there is to see

/// Brings the list up to date.
void Lobby::refreshList() {
  for (Shown& shown : shown_) {
    RingTable& table = *shown.table;
    const std::uint32_t gameID = table.settings().gameID;
    const ServerTableEntry* before = list_.find(gameID);
    const bool waitsSame = before != nullptr && before->waitListLength == waiting_.length(gameID);
    if (shown.isListed && shown.tableChanges == table.changes() && (before == nullptr || waitsSame)) continue;
    shown.isListed = true;
    shown.tableChanges = table.changes();
    if (table.isClosed() && table.isIdle()) {
      list_.remove(gameID);
      continue;
    }
    describe(table, waiting_, line_);
    if (before != nullptr && before->players == 0 && line_.players == 1 && !listViewers_.empty())
      shown.cameAlone = true;
    list_.set(line_);
  }
}

void Lobby::refreshDetails(Shown& shown) {
  const bool isFirst = shown.details.version == 0;
  if (!isFirst && shown.detailsChanges == shown.table->changes() && shown.waitChanges == waiting_.changes()) return;
  shown.detailsChanges = shown.table->changes();
  shown.waitChanges = waiting_.changes();
  describe(*shown.table, waiting_, details_);
  if (!isFirst && saySame(details_, shown.details)) return;
  details_.version = numbers_.forChange();
  shown.details = details_;
}

/// Counted anew, in counters_.
const SrvServerCountersInfo::Counters& Lobby::counters() {
  std::uint32_t seated = 0, playing = 0;
  std::uint64_t hands = 0;
  for (const Shown& shown : shown_) {
    if (list_.find(shown.table->settings().gameID) != nullptr)
      seated += static_cast<std::uint32_t>(shown.table->players());
    playing += shown.table->isIdle() ? 0 : 1;
    hands += shown.table->handsPlayed();
  }
  counters_.set(kPlayersLoggedOn, static_cast<std::uint32_t>(playersLoggedOn_));
  counters_.set(kPlayersSeated, seated);
  counters_.set(kTables, static_cast<std::uint32_t>(list_.size()));
  counters_.set(kTablesPlaying, playing);
  counters_.set(kHandsPlayed, static_cast<std::uint32_t>(hands));
  return counters_;
}

void Lobby::setNews(SrvNewsType type, const std::string& text) {
  news_[type] = text;
  newsChanged_ = hasChanged_ = true;
}

CommandHandle<SrvNews> Lobby::news() const {
  auto news = make<SrvNews>();
  for (const auto& [type, text] : news_) news->addMsg(type, text.c_str());
  return news;
}

void Lobby::setPlayersLoggedOn(std::size_t players) {
  playersLoggedOn_ = players;
  hasChanged_ = true;
}

// Once a second

void Lobby::settle() {
  if (isTickSet_ || !isWatched()) return;
  if (!hasChanged_ && waitChanges_ == waiting_.changes()) return;
  isTickSet_ = true;
  timer_.expires_at(std::max(Clock::now(), nextTick_));
  timer_.async_wait([this](const std::error_code& cancelled) {
    if (cancelled) return;
    isTickSet_ = false;
    nextTick_ = Clock::now() + kTickTime;
    outbox_.run([this] { tick(); });
  });
}

void Lobby::tick() {
  hasChanged_ = false;
  waitChanges_ = waiting_.changes();
  if (!listViewers_.empty()) tellList();
  if (detailsOf_.empty()) return;
  for (Shown& shown : shown_) {
    if (!shown.viewers.empty()) tellDetails(shown);
  }
}

void Lobby::tellList() {
  refreshList();
  // Most have the list of the last tick; whoever came later may have a newer one.
  std::map<std::uint32_t, ConnectionsSet> outdated;
  ConnectionsSet all;
  for (auto& [client, version] : listViewers_) {
    all.insert(client);
    if (version != list_.version()) outdated[version].insert(client);
    version = list_.version();
  }
  for (const auto& [version, viewers] : outdated) {
    list_.changesSince(version, update_);
    outbox_.add<SrvServerInfo>(viewers, update_);
  }
  if (counters() != toldCounters_ || countersDiffer_) {
    toldCounters_ = counters_;
    countersDiffer_ = false;
    auto counts = make<SrvServerCountersInfo>();
    counts->counters() = counters_;
    outbox_.put(std::move(counts), all);
  }
  if (std::exchange(newsChanged_, false)) outbox_.put(news(), all);
  for (Shown& shown : shown_) {
    if (std::exchange(shown.cameAlone, false) && shown.table->players() == 1) {
      outbox_.add<SrvOneUser>(all, shown.table->settings().gameID);
    }
  }
}

void Lobby::tellDetails(Shown& shown) {
  refreshDetails(shown);
  ConnectionsSet outdated;
  for (auto& [client, version] : shown.viewers) {
    if (version != shown.details.version) outdated.insert(client);
    version = shown.details.version;
  }
  if (outdated.empty()) return;
  numbers_.tell();
  outbox_.add<SrvGameInfo>(outdated, shown.details);
}

}  // namespace poker::holdem
