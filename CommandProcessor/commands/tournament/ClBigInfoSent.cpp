#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/ClBigInfoSent.h>

namespace poker {

void ClBigInfoSent::init(std::uint32_t tournamentId) {
  clearConnections();
  tournamentId_ = tournamentId;
}

void ClBigInfoSent::fields(auto& self, auto&& field) { field.local(self.tournamentId_); }

template class Command<ClBigInfoSent, ClientTourCommandBase>;
template class CachedCmdCreator<ClBigInfoSent>;

}  // namespace poker
