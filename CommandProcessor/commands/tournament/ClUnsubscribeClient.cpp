#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/ClUnsubscribeClient.h>

namespace poker {

void ClUnsubscribeClient::init(std::uint32_t tournamentId) {
  clearConnections();
  tournamentId_ = tournamentId;
}

void ClUnsubscribeClient::fields(auto& self, auto&& field) { field("tournamentId", self.tournamentId_); }

template class Command<ClUnsubscribeClient, ClientTourCommandBase>;
template class CachedCmdCreator<ClUnsubscribeClient>;

}  // namespace poker
