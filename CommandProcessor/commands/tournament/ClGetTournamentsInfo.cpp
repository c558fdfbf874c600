#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/ClGetTournamentsInfo.h>

namespace poker {

void ClGetTournamentsInfo::init(TOUR_NAMES::TourType type, std::uint32_t version) {
  clearConnections();
  type_ = type;
  version_ = version;
}

void ClGetTournamentsInfo::fields(auto& self, auto&& field) {
  field("type", self.type_);
  field("version", self.version_);
}

template class Command<ClGetTournamentsInfo, ClientTourCommandBase>;
template class CachedCmdCreator<ClGetTournamentsInfo>;

}  // namespace poker
