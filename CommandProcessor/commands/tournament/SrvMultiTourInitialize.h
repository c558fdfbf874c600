#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/types/MultiTourPlayersInfo.h>
#include <CommandProcessor/types/MultiTourTablesInfo.h>
#include <CommandProcessor/types/MultiTourTextInfo.h>
#include <CommandProcessor/types/PrizeFundInfo.h>
#include <CommandProcessor/types/PrizeSchemeInfoMap.h>

#include <cstdint>

namespace poker {

/// The full picture of a multi-table tournament, in answer to ClGetMultiInitializeInfo. Each part has a version of its
/// own, which the client gives in ClGetUpdateInfo to learn of changes.
class COMMANDPROCESSOR_API SrvMultiTourInitialize final : public Command<SrvMultiTourInitialize> {
 public:
  /// Tables, players and texts tell their own versions.
  /// @param prizeVersion  of `prizes`
  /// @param fundVersion   of `fund`
  void init(const MultiTourTablesInfo& tables, const MultiTourPlayersInfo& players, const MultiTourTextInfo& text,
            std::uint32_t tourID, const PrizeSchemeInfoMap& prizes, const PrizeFundInfo& fund,
            std::uint32_t prizeVersion, std::uint32_t fundVersion);

  const MultiTourTablesInfo& getTablesInfo() const { return tables_; }
  const MultiTourPlayersInfo& getPlayersInfo() const { return players_; }
  const MultiTourTextInfo& getTextInfo() const { return text_; }
  std::uint32_t tourID() const { return tourID_; }
  const PrizeSchemeInfoMap& getPrizes() const { return prizes_; }
  const PrizeFundInfo& getFundInfo() const { return fund_; }
  std::uint32_t prizeVersion() const { return prizeVersion_; }
  std::uint32_t getFundVersion() const { return fundVersion_; }

 private:
  friend FieldAccess;
  SrvMultiTourInitialize() = default;
  static void fields(auto& self, auto&& field);

  MultiTourTablesInfo tables_;
  MultiTourPlayersInfo players_;
  MultiTourTextInfo text_;
  std::uint32_t tourID_ = 0;
  PrizeSchemeInfoMap prizes_;
  std::uint32_t prizeVersion_ = 0;
  std::uint32_t fundVersion_ = 0;
  PrizeFundInfo fund_;
};

}  // namespace poker
