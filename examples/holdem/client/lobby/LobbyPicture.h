#pragma once

#include <CommandProcessor/commands/AllCommands.h>
#include <CommandProcessor/types/TableInfoDetailed.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace poker::holdem {

/// The lobby as one viewer sees it, kept up to date with what the server sends: a list of tables, the house's counters and
/// news, and the details of one table. One thread at a time.
class LobbyPicture {
 public:
  using Tables = std::map<std::uint32_t, ServerTableEntry>;

  /// By number.
  const Tables& tables() const { return tables_; }
  /// Null when there is no such table.
  const ServerTableEntry* table(std::uint32_t gameID) const;
  /// Of the list; 0 as long as there is none.
  std::uint32_t version() const { return version_; }
  /// By the keys that server and client have agreed on.
  const SrvServerCountersInfo::Counters& counters() const { return counters_; }
  /// Texts by message number; those that were taken back are not among them.
  const std::map<std::int32_t, std::string>& news() const { return news_; }
  /// Of the table that was told of last.
  const std::optional<TableInfoDetailed>& details() const { return details_; }

  /// What is older than what is here changes nothing.
  void apply(const SrvServerInfo& command);
  void apply(const SrvServerCountersInfo& command);
  void apply(const SrvNews& command);
  void apply(const SrvGameInfo& command) { details_ = command.getDetailedInfo(); }

 private:
  Tables tables_;
  std::uint32_t version_ = 0;
  SrvServerCountersInfo::Counters counters_;
  std::map<std::int32_t, std::string> news_;
  std::optional<TableInfoDetailed> details_;
};

}  // namespace poker::holdem
