#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/ClGetMultiInitializeInfo.h>

namespace poker {

void ClGetMultiInitializeInfo::init(std::uint32_t tournamentId) {
  clearConnections();
  tournamentId_ = tournamentId;
}

void ClGetMultiInitializeInfo::fields(auto& self, auto&& field) { field("tournamentId", self.tournamentId_); }

template class Command<ClGetMultiInitializeInfo, ClientTourCommandBase>;
template class CachedCmdCreator<ClGetMultiInitializeInfo>;

}  // namespace poker
