#pragma once

#include <CommandProcessor/commands/AllCommands.h>
#include <examples/holdem/server/Outbox.h>

#include <cstdint>
#include <string>

namespace poker::holdem {

/// What the lobby shows of one tournament: its tables, players, texts, prizes and fund, each part with a version of its own,
/// so that a client can be told what has changed since the one it has. A version is 1 or above, and never goes back.
/// What is set as it was before changes nothing. One thread at a time.
class TourBoard {
 public:
  /// The versions of the parts that a client has; 0: nothing of it.
  struct Versions {
    std::uint32_t tables = 0;
    std::uint32_t players = 0;
    std::uint32_t text = 0;
    std::uint32_t prizes = 0;
    std::uint32_t fund = 0;
  };

  explicit TourBoard(std::uint32_t tourID);

  void setTable(const MultiTourTableEntry& table);
  void removeTable(std::uint32_t tableID);
  /// By its name.
  void setPlayer(const MultiTourPlayerEntry& player);
  void removePlayer(const std::string& name);
  void setText(MultiTourText key, const std::string& text);
  void setPrizes(const PrizeSchemeInfoMap& prizes);
  void setFund(const PrizeFundInfo& fund);

  Versions versions() const;
  /// The whole picture.
  void tellAll(Outbox& outbox, const ConnectionID& client) const;
  /// A command for each part that is another one than the client has: what changed since then, or all of it to a client
  /// whose version is not from here.
  /// @return whether there was anything to tell
  bool tellChanges(Outbox& outbox, const ConnectionID& client, const Versions& known) const;
};

}  // namespace poker::holdem
