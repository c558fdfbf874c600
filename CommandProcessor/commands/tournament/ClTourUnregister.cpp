#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/ClTourUnregister.h>

namespace poker {

void ClTourUnregister::init(std::uint32_t tournamentId) {
  clearConnections();
  tournamentId_ = tournamentId;
}

void ClTourUnregister::fields(auto& self, auto&& field) { field("tournamentId", self.tournamentId_); }

template class Command<ClTourUnregister, ClientTourCommandBase>;
template class CachedCmdCreator<ClTourUnregister>;

}  // namespace poker
