#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/ClGetUpdateInfo.h>

namespace poker {

void ClGetUpdateInfo::init(std::uint32_t tablesVer, std::uint32_t playersVer, std::uint32_t textVer,
                           std::uint32_t tournamentId, std::uint32_t prizeVersion, std::uint32_t fundVer) {
  clearConnections();
  tablesVer_ = tablesVer;
  playersVer_ = playersVer;
  textVer_ = textVer;
  tournamentId_ = tournamentId;
  prizeVersion_ = prizeVersion;
  fundVer_ = fundVer;
}

void ClGetUpdateInfo::fields(auto& self, auto&& field) {
  field("tablesVer", self.tablesVer_);
  field("playersVer", self.playersVer_);
  field("textVer", self.textVer_);
  field("tournamentId", self.tournamentId_);
  field("prizeVersion", self.prizeVersion_);
  field("fundVer", self.fundVer_);
}

template class Command<ClGetUpdateInfo, ClientTourCommandBase>;
template class CachedCmdCreator<ClGetUpdateInfo>;

}  // namespace poker
