#pragma once

#include <CommandProcessor/commands/Command.h>
#include <CommandProcessor/commands/tournament/ClientTourCommandBase.h>

#include <cstdint>

namespace poker {

/// The lobby gives the version that it holds of each part of a multi-table tournament's picture. Each part that is
/// newer is answered by a command of its own: SrvUpdateTables, SrvUpdatePlayers, SrvUpdateText, SrvUpdatePrizeDescr,
/// SrvUpdatePrizeFund.
class COMMANDPROCESSOR_API ClGetUpdateInfo final : public Command<ClGetUpdateInfo, ClientTourCommandBase> {
 public:
  /// A version of 0 asks for the whole part.
  /// @param prizeVersion  of the scheme of prizes
  void init(std::uint32_t tablesVer, std::uint32_t playersVer, std::uint32_t textVer, std::uint32_t tournamentId,
            std::uint32_t prizeVersion, std::uint32_t fundVer);

  std::uint32_t getTablesVer() const { return tablesVer_; }
  std::uint32_t getPlayersVer() const { return playersVer_; }
  std::uint32_t getTextVer() const { return textVer_; }
  std::uint32_t prizeVersion() const { return prizeVersion_; }
  std::uint32_t getFundVer() const { return fundVer_; }

 private:
  friend FieldAccess;
  ClGetUpdateInfo() = default;
  static void fields(auto& self, auto&& field);

  std::uint32_t tablesVer_ = 0;
  std::uint32_t playersVer_ = 0;
  std::uint32_t textVer_ = 0;
  std::uint32_t prizeVersion_ = 0;
  std::uint32_t fundVer_ = 0;
};

}  // namespace poker
