#pragma once

#include <CommandProcessor/commands/AllCommands.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace poker::holdem {

/// A tournament as one client sees it, kept up to date with what the server answers: tables, players, texts, prizes and fund,
/// each part with its version, and the summary. What is older than what is here, or of another tournament, changes nothing.
/// One thread at a time.
class TourPicture {
 public:
  /// By number.
  using Tables = std::map<std::uint32_t, MultiTourTableEntry>;
  /// By name.
  using Players = std::map<std::string, MultiTourPlayerEntry>;
  using Texts = std::map<MultiTourText, std::string>;
  /// What the server tells of the whole, and of this client in it.
  struct Summary {
    MultiTourMoneyInfo money;
    MultiStartInfo start;
    MultiTourneyInfo numbers;
    std::uint32_t ownTable = 0;  ///< 0: none
    bool isRegistered = false;
  };

  explicit TourPicture(std::uint32_t tournamentID) : tournamentID_(tournamentID) {}

  std::uint32_t tournamentID() const { return tournamentID_; }
  const Tables& tables() const { return tables_; }
  const Players& players() const { return players_; }
  const Texts& texts() const { return texts_; }
  /// Empty for one that the tournament does not have.
  const std::string& text(MultiTourText key) const;
  const PrizeSchemeInfoMap& prizes() const { return prizes_; }
  const PrizeFundInfo& fund() const { return fund_; }
  /// None as long as nothing was told.
  const std::optional<Summary>& summary() const { return summary_; }
  /// Whether the whole picture has come.
  bool isWhole() const { return isWhole_; }

  /// Takes the place of everything but the summary.
  void apply(const SrvMultiTourInitialize& command);
  void apply(const SrvUpdateTables& command);
  void apply(const SrvUpdatePlayers& command);
  void apply(const SrvUpdateText& command);
  void apply(const SrvUpdatePrizeDescr& command);
  void apply(const SrvUpdatePrizeFund& command);
  void apply(const SrvMultiTourDetailedInfo& command);

  /// Asks for what has changed since then.
  /// @param client  sends: a HouseClient, a Visit
  template <class Client>
  void askForChanges(Client& client) const {
    client.template send<ClGetUpdateInfo>(tablesVersion_, playersVersion_, textVersion_, tournamentID_, prizesVersion_,
                                          fundVersion_);
  }

  /// Whether the five parts say the same of the same tournament, in whichever versions and whoever looks at it.
  friend bool operator==(const TourPicture& a, const TourPicture& b);

 private:
  std::uint32_t tournamentID_;
  Tables tables_;
  Players players_;
  Texts texts_;
  PrizeSchemeInfoMap prizes_;
  PrizeFundInfo fund_;
  std::uint32_t tablesVersion_ = 0;
  std::uint32_t playersVersion_ = 0;
  std::uint32_t textVersion_ = 0;
  std::uint32_t prizesVersion_ = 0;
  std::uint32_t fundVersion_ = 0;
  std::optional<Summary> summary_;
  bool isWhole_ = false;
};

/// The list of tournaments of one kind as one client sees it. What is older than what is here, or of another kind, changes
/// nothing. One thread at a time.
class TourListPicture {
 public:
  /// By number.
  using Tournaments = std::map<std::uint32_t, TourListEntry>;

  explicit TourListPicture(TOUR_NAMES::TourType type) : type_(type) {}

  TOUR_NAMES::TourType type() const { return type_; }
  const Tournaments& tournaments() const { return tournaments_; }
  /// Null when there is no such tournament.
  const TourListEntry* tournament(std::uint32_t tournamentID) const;
  /// Of the list; 0 as long as there is none.
  std::uint32_t version() const { return version_; }

  void apply(const SrvTournamentsInfo& command);

 private:
  TOUR_NAMES::TourType type_;
  Tournaments tournaments_;
  std::uint32_t version_ = 0;
};

}  // namespace poker::holdem
