#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvMultiTourInitialize.h>

namespace poker {

void SrvMultiTourInitialize::init(const MultiTourTablesInfo& tables, const MultiTourPlayersInfo& players,
                                  const MultiTourTextInfo& text, std::uint32_t tourID, const PrizeSchemeInfoMap& prizes,
                                  const PrizeFundInfo& fund, std::uint32_t prizeVersion, std::uint32_t fundVersion) {
  clearConnections();
  tables_ = tables;
  players_ = players;
  text_ = text;
  tourID_ = tourID;
  prizes_ = prizes;
  fund_ = fund;
  prizeVersion_ = prizeVersion;
  fundVersion_ = fundVersion;
}

void SrvMultiTourInitialize::fields(auto& self, auto&& field) {
  field("tables", self.tables_);
  field("players", self.players_);
  field("text", self.text_);
  field("tourID", self.tourID_);
  field("prizes", self.prizes_);
  field("prizeVersion", self.prizeVersion_);
  field("fundVersion", self.fundVersion_);
  field("fund", self.fund_);  // behind its version, last of all
}

template class Command<SrvMultiTourInitialize>;
template class CachedCmdCreator<SrvMultiTourInitialize>;

}  // namespace poker
