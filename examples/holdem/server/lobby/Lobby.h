#pragma once

#include <CommandProcessor/commands/AllCommands.h>
#include <examples/holdem/server/Outbox.h>
#include <examples/holdem/server/lobby/TableDescriptions.h>
#include <examples/holdem/server/lobby/TableList.h>
#include <examples/holdem/server/lobby/WaitLists.h>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace poker::holdem {

/// Who looks at the list of tables or at one table's details, and what they are told: all at once when they begin to look,
/// then what has changed, at most once a second. While nobody looks, nothing is done here but to note that something has
/// changed. All calls come from the thread of the io_context; what is said goes to the outbox.
class Lobby {
 public:
  /// All references must outlive this object.
  Lobby(asio::io_context& context, const WaitLists::Tables& tables, const WaitLists& waiting, Outbox& outbox,
        VersionNumbers::Reserve reserveNumbers);

  /// The client looks at the list from now on.
  /// @param version  that it has; 0: none
  void lookAtList(const ConnectionID& client, std::uint32_t version);
  void lookAwayFromList(const ConnectionID& client) { listViewers_.erase(client.value()); }
  /// The client looks at that table's details from now on, and at no other one's. Nothing happens when there is no such
  /// table.
  void lookAtTable(const ConnectionID& client, std::uint32_t gameID, std::uint32_t version);
  void lookAwayFromTable(const ConnectionID& client);
  /// Puts all who look at something into the set.
  void addViewers(ConnectionsSet& all) const;
  /// The connection is gone.
  void forget(const ConnectionID& client);

  /// An empty text takes the news back.
  void setNews(SrvNewsType type, const std::string& text);
  void setPlayersLoggedOn(std::size_t players);
  /// Something has changed at a table.
  void noteChange() { hasChanged_ = true; }
  /// To be called at the end of every event, after that of the wait lists.
  void settle();

 private:
  /// The version that each viewer's connection has.
  using Viewers = std::map<std::int32_t, std::uint32_t>;

  struct Shown {
    RingTable* table;
    bool isListed = false;  // as of tableChanges
    std::uint64_t tableChanges = 0;
    bool cameAlone = false;  // a player, since the last tick
    // Kept from the first look at the details on; version 0 until then.
    TableInfoDetailed details;
    std::uint64_t detailsChanges = 0;
    std::uint64_t waitChanges = 0;
    Viewers viewers;
  };

  bool isWatched() const { return !listViewers_.empty() || !detailsOf_.empty(); }
  void beginToLook();
  void refreshList();
  void refreshDetails(Shown& shown);
  const SrvServerCountersInfo::Counters& counters();
  CommandHandle<SrvNews> news() const;
  void tick();
  void tellList();
  void tellDetails(Shown& shown);

  const WaitLists& waiting_;
  Outbox& outbox_;
  VersionNumbers numbers_;
  TableList list_;
  std::vector<Shown> shown_;  // all tables
  Viewers listViewers_;
  std::map<std::int32_t, Shown*> detailsOf_;  // what each viewer of details looks at
  std::map<SrvNewsType, std::string> news_;
  bool newsChanged_ = false;
  std::size_t playersLoggedOn_ = 0;
  bool hasChanged_ = false;
  std::uint64_t waitChanges_ = 0;
  asio::steady_timer timer_;
  bool isTickSet_ = false;
  Clock::time_point nextTick_{};  // not before
  SrvServerCountersInfo::Counters toldCounters_;
  bool countersDiffer_ = false;  // somebody was told others
  // Filled anew for each use.
  ServerTableEntry line_;
  TableInfoDetailed details_;
  ServerUpdateInfo update_;
  SrvServerCountersInfo::Counters counters_;
};

}  // namespace poker::holdem
