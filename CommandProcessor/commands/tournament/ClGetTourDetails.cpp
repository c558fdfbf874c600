#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/ClGetTourDetails.h>

namespace poker {

void ClGetTourDetails::init(std::uint32_t tournamentId, std::uint32_t version) {
  clearConnections();
  tournamentId_ = tournamentId;
  version_ = version;
}

void ClGetTourDetails::fields(auto& self, auto&& field) {
  field("tournamentId", self.tournamentId_);
  field("version", self.version_);
}

template class Command<ClGetTourDetails, ClientTourCommandBase>;
template class CachedCmdCreator<ClGetTourDetails>;

}  // namespace poker
