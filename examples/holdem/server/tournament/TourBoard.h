#pragma once

#include <CommandProcessor/commands/AllCommands.h>
#include <examples/holdem/server/Outbox.h>
#include <examples/holdem/server/lobby/VersionedMap.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace poker::holdem {

/// What the lobby shows of one tournament: its tables, players, texts, prizes and fund, each part with a version of its own,
/// so that a client can be told what has changed since the one it has. A part that was never set has version 1, and a
/// version never goes back. What is set as it was before changes nothing. One thread at a time.
class TourBoard {
 public:
  /// The versions of the parts that a client has; 0: nothing of it.
  struct Versions {
    std::uint32_t tables = 0;
    std::uint32_t players = 0;
    std::uint32_t text = 0;
    std::uint32_t prizes = 0;
    std::uint32_t fund = 0;

    friend bool operator==(const Versions&, const Versions&) = default;
  };

  explicit TourBoard(std::uint32_t tourID) : tourID_(tourID) {}

  /// By its number.
  void setTable(const MultiTourTableEntry& table);
  void removeTable(std::uint32_t tableID) { tables_.remove(tableID); }
  /// By its name.
  void setPlayer(const MultiTourPlayerEntry& player);
  void removePlayer(const std::string& name) { players_.remove(name); }
  void setText(MultiTourText key, const std::string& text) { texts_.set(key, text); }
  void setPrizes(const PrizeSchemeInfoMap& prizes);
  void setFund(const PrizeFundInfo& fund);

  Versions versions() const;
  /// Whether each of them is one that a part had here, or has.
  bool knows(const Versions& versions) const;
  /// The whole picture.
  void tellAll(Outbox& outbox, const ConnectionID& client) const;
  /// How many tables, players and prizes tellChanges() would tell of, gone ones included.
  std::size_t changes(const Versions& known) const;
  /// A command for each part that is another one than the client has: what changed since then, or all of it to a client
  /// whose version is not from here.
  /// @return whether there was anything to tell
  bool tellChanges(Outbox& outbox, const ConnectionID& client, const Versions& known) const;

 private:
  // What is different since a version; valid until the next call.
  const MultiTourTablesInfo& tablesSince(std::uint32_t version) const;
  const MultiTourPlayersInfo& playersSince(std::uint32_t version) const;
  const MultiTourTextInfo& textSince(std::uint32_t version) const;

  std::uint32_t tourID_;
  VersionedMap<std::uint32_t, MultiTourTableEntry> tables_;
  VersionedMap<std::string, MultiTourPlayerEntry> players_;
  VersionedMap<MultiTourText, std::string> texts_;
  PrizeSchemeInfoMap prizes_;
  std::uint32_t prizesVersion_ = 1;
  PrizeFundInfo fund_;
  std::uint32_t fundVersion_ = 1;
  // Filled anew for each use.
  mutable MultiTourTablesInfo tablesInfo_;
  mutable MultiTourPlayersInfo playersInfo_;
  mutable MultiTourTextInfo textInfo_;
  mutable std::vector<const std::string*> names_;
};

}  // namespace poker::holdem
