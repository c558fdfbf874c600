#include <CommandProcessor/commands/tournament/ClientTourCommandBase.h>

namespace poker {

ClientTourCommandBase::~ClientTourCommandBase() = default;

std::uint32_t ClientTourCommandBase::tournamentId() const { return tournamentId_; }

}  // namespace poker
