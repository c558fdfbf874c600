#include <CommandProcessor/commands/CommandImpl.h>
#include <CommandProcessor/commands/tournament/SrvTourProtectionError.h>

namespace poker {

void SrvTourProtectionError::init(Reason reason, std::uint32_t tourID) {
  clearConnections();
  reason_ = reason;
  tourID_ = tourID;
}

std::string SrvTourProtectionError::reasonStr() const {
  if (reason_ != Reason::RegisterFirst) return "";
  return "This tournament has strict password protection !\n"
         "You must register first in order to observe tournament room or tournament tables.";
}

void SrvTourProtectionError::fields(auto& self, auto&& field) {
  field("reason", self.reason_);
  field("tourID", self.tourID_);
}

template class Command<SrvTourProtectionError>;
template class CachedCmdCreator<SrvTourProtectionError>;

}  // namespace poker
