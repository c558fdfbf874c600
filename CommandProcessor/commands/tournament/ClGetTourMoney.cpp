#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/ClGetTourMoney.h>

namespace poker {

void ClGetTourMoney::init(std::uint32_t tournamentId) {
  clearConnections();
  tournamentId_ = tournamentId;
}

void ClGetTourMoney::fields(auto& self, auto&& field) { field("tournamentId", self.tournamentId_); }

template class Command<ClGetTourMoney, ClientTourCommandBase>;
template class CachedCmdCreator<ClGetTourMoney>;

}  // namespace poker
